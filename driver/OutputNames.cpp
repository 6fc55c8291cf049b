#include "driver/OutputNames.h"

#include <algorithm>

#include "foundation/CaseFolding.h"

namespace zaf {
namespace {

/// Position of the last occurrence of the dotted extension, ignoring case; npos if not found.
std::size_t FindExtension(std::string_view name, std::string_view dotted_extension) {
  const auto place =
      std::find_end(name.begin(), name.end(), dotted_extension.begin(), dotted_extension.end(),
                    [](char a, char b) { return ToLower(a) == ToLower(b); });
  return place == name.end() ? std::string_view::npos
                             : static_cast<std::size_t>(place - name.begin());
}

}  // namespace

bool HasExtension(std::string_view name, std::string_view dotted_extension) {
  const std::size_t position = FindExtension(name, dotted_extension);
  return position != std::string_view::npos && name.size() - position == dotted_extension.size();
}

std::string OutputName(std::string_view name, std::string_view dotted_extension,
                       std::string_view dotted_suffix) {
  std::string result(name);
  if (const std::size_t position = FindExtension(name, dotted_extension);
      position != std::string::npos)
    result.erase(position, dotted_extension.size());
  return result.append(dotted_suffix);
}

}  // namespace zaf
