#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace zaf::faults {

/// A directory with all that is in it: for each path, relative to it, a letter for what it is and,
/// directly behind that, the bytes of a file or the target of a symbolic link.
using TTree = std::map<std::string, std::string>;

inline constexpr char kFileLetter = 'f';
inline constexpr char kDirectoryLetter = 'd';
inline constexpr char kLinkLetter = 'l';

inline std::string FileEntry(std::string_view bytes) {
  return std::string(1, kFileLetter).append(bytes);
}
inline std::string DirectoryEntry() { return std::string(1, kDirectoryLetter); }
inline bool IsFileEntry(const std::string& entry) { return entry.front() == kFileLetter; }

/// Puts a file into the tree, and the directories above it.
void AddFile(TTree& tree, const std::string& path, std::string_view bytes);

/// Reads what is in a directory; follows no symbolic links. A tree that cannot be read throws.
TTree ReadTree(const std::filesystem::path& directory);

/// Makes the directory hold the tree and nothing else.
void WriteTree(const TTree& tree, const std::filesystem::path& directory);

std::string ReadFile(const std::filesystem::path& path);

}  // namespace zaf::faults
