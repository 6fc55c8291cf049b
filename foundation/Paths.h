#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

/// Operations on paths, which are texts: on Windows UTF-8, whatever the code page of the system,
/// and as long as it allows; elsewhere bytes. The standard library's functions for files fail on
/// Windows for paths of more than 260 characters. FileSystemPosix.cpp and FileSystemWindows.cpp
/// implement them, FileSystem.cpp what they share.
namespace zaf {

/// What is at a path. Symbolic links are followed.
enum class PathKind : std::uint8_t { kUnknown, kNothing, kFile, kDirectory, kOther };

struct TPathInfo {
  PathKind kind = PathKind::kUnknown;
  std::uint64_t size = 0;  ///< Of a regular file, in bytes.
};

[[nodiscard]] TPathInfo LookAt(std::string_view path);
[[nodiscard]] bool IsThere(std::string_view path);
[[nodiscard]] bool IsDirectory(std::string_view path);

/// Whether both paths lead to one file or directory; false when that is unknown.
[[nodiscard]] bool AreSame(std::string_view one, std::string_view two);

/// Makes the directory and those above it, as far as they are missing. Whether it exists then.
[[nodiscard]] bool MakeDirectories(std::string_view path);

/// Calls `visit` for each entry of a directory but "." and ".." and links to directories, in any
/// order. The kind is kDirectory or another. False when not all of them could be read.
using EntryVisitor = std::function<void(std::string_view name, PathKind kind)>;
[[nodiscard]] bool VisitEntries(std::string_view directory, const EntryVisitor& visit);

/// Gives a file the time stamp of another one.
[[nodiscard]] bool CopyTime(std::string_view from, std::string_view to);

/// Whether one file was changed after the other; false when that is unknown.
[[nodiscard]] bool IsNewer(std::string_view one, std::string_view two);

/// The path for a stream of the standard library.
[[nodiscard]] std::filesystem::path StreamPath(std::string_view path);

/// The text as a path whose text is examined, and back. On Windows bytes that are not UTF-8 become
/// U+FFFD, which no name has.
[[nodiscard]] std::filesystem::path ToPath(std::string_view text);
[[nodiscard]] std::string ToText(const std::filesystem::path& path);

}  // namespace zaf
