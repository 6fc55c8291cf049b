#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace zaf {

/// Converts a path for a stream of the standard library.
[[nodiscard]] std::filesystem::path StreamPath(std::string_view path);

/// Convert a text to a path that is only taken apart, not opened, and back. On Windows bytes that
/// are not UTF-8 become U+FFFD, which no name has.
[[nodiscard]] std::filesystem::path ToPath(std::string_view text);
[[nodiscard]] std::string ToText(const std::filesystem::path& path);

}  // namespace zaf
