#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zaf {

/// Whether a name ends with the dotted extension, ignoring case.
bool HasExtension(std::string_view name, std::string_view dotted_extension);

/// The output name of a file that was found in a directory: replaces the dotted extension at the
/// end of the name (ignoring case) by the dotted suffix. None if the name ends otherwise.
std::optional<std::string> OutputNameInDirectory(std::string_view name,
                                                 std::string_view dotted_extension,
                                                 std::string_view dotted_suffix);

/// The output name of a single file if none is given: removes the last occurrence of the dotted
/// extension, wherever it is, and appends the dotted suffix.
std::string OutputNameOfSingleFile(std::string_view name, std::string_view dotted_extension,
                                   std::string_view dotted_suffix);

}  // namespace zaf
