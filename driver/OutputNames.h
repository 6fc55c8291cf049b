#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zaf {

/// Whether a name ends with the dotted extension, ignoring case.
bool HasExtension(std::string_view name, std::string_view dotted_extension);

/// The output name of a file that was found in a directory: the dotted extension, with which the
/// name has to end (ignoring case), becomes the dotted suffix. None when it ends otherwise.
std::optional<std::string> OutputNameInDirectory(std::string_view name,
                                                 std::string_view dotted_extension,
                                                 std::string_view dotted_suffix);

/// The output name of a single file that is given none: the last occurrence of the dotted extension
/// is removed, wherever it is, and the dotted suffix appended.
std::string OutputNameOfSingleFile(std::string_view name, std::string_view dotted_extension,
                                   std::string_view dotted_suffix);

}  // namespace zaf
