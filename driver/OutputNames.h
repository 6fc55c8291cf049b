#pragma once

#include <string>
#include <string_view>

namespace zaf {

/// Whether a name ends with the dotted extension, ignoring case.
bool HasExtension(std::string_view name, std::string_view dotted_extension);

/// The output name of a file if none is given: removes the last occurrence of the dotted extension
/// (ignoring case), wherever it is, and appends the dotted suffix.
std::string OutputName(std::string_view name, std::string_view dotted_extension,
                       std::string_view dotted_suffix);

}  // namespace zaf
