#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Converts paths between the program's texts and the standard library. On Windows texts are UTF-8,
/// whatever the code page of the system; elsewhere they are bytes and unchanged.
namespace zaf {

#ifdef _WIN32
/// Bytes that are not UTF-8 become U+FFFD, so that no file is found. Separators at the end are
/// removed: the standard library finds no directory of such a name.
[[nodiscard]] std::filesystem::path ToPath(std::string_view text);
[[nodiscard]] std::string ToText(const std::filesystem::path& path);
/// Whether an entry is a symbolic link or a junction; the standard library does not detect the
/// latter.
[[nodiscard]] bool IsLink(const std::filesystem::directory_entry& entry);
#else
inline std::filesystem::path ToPath(std::string_view text) { return text; }
inline std::string ToText(const std::filesystem::path& path) { return path.string(); }
inline bool IsLink(const std::filesystem::directory_entry& entry) {
  std::error_code error;
  return entry.is_symlink(error);
}
#endif

}  // namespace zaf
