#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

/// Operations on paths, which are texts: on Windows UTF-8, whatever the code page of the system;
/// elsewhere bytes. Paths may have any length that the system allows; on Windows the functions of
/// the standard library fail for more than 260 characters. FileSystemPosix.cpp and
/// FileSystemWindows.cpp implement these functions, FileSystem.cpp their common parts.
namespace zaf {

/// What exists at a path. Symbolic links are followed.
enum class PathKind : std::uint8_t { kUnknown, kNothing, kFile, kDirectory, kOther };

struct TPathInfo {
  PathKind kind = PathKind::kUnknown;
  std::uint64_t size = 0;  ///< Of a regular file, in bytes.
};

/// Examines what exists at a path; kUnknown if that is impossible.
[[nodiscard]] TPathInfo LookAt(std::string_view path);
[[nodiscard]] bool IsThere(std::string_view path);
[[nodiscard]] bool IsDirectory(std::string_view path);

/// Whether both paths refer to the same file or directory; false when that is unknown.
[[nodiscard]] bool AreSame(std::string_view one, std::string_view two);

/// Creates the directory and its missing parents. Returns whether it exists afterwards.
[[nodiscard]] bool MakeDirectories(std::string_view path);

/// Calls `visit` for each entry of a directory except ".", ".." and links to directories, in any
/// order. The kind is kDirectory for directories only. False if not all entries could be read.
using EntryVisitor = std::function<void(std::string_view name, PathKind kind)>;
[[nodiscard]] bool VisitEntries(std::string_view directory, const EntryVisitor& visit);

/// Gives the file `to` the modification time of `from`; false on failure.
[[nodiscard]] bool CopyTime(std::string_view from, std::string_view to);

/// Whether `one` was modified after `two`; false when that is unknown.
[[nodiscard]] bool IsNewer(std::string_view one, std::string_view two);

}  // namespace zaf
