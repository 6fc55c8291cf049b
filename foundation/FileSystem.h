#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/Status.h"
#include "foundation/TNameList.h"

/// The file system operations that the program uses. FileSystemPosix.cpp and FileSystemWindows.cpp
/// implement them, each on its own system, FileSystem.cpp what they share.
///
/// On Windows paths are UTF-8 and may be as long as the system allows (some 32,000 characters), the
/// working directory's included. Paths that Windows would interpret differently fail there: devices
/// (`con`, `nul.txt`), streams (`a:b`), names that end with a full stop or a blank.
namespace zaf {

class CText;

#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
/// Whether equal directories commonly have different names that differ by case, separators or short
/// names.
inline constexpr bool kDirectoriesHaveManyNames = true;
/// The character type of the program's arguments.
using TArgumentCharacter = wchar_t;
#else
inline constexpr char kPathSeparator = '/';
inline constexpr bool kDirectoriesHaveManyNames = false;
using TArgumentCharacter = char;
#endif

/// The arguments of the program as texts, on Windows in UTF-8.
class TArguments {
 public:
  /// Prepares the process, too: main() begins with it.
  TArguments(int count, TArgumentCharacter** values);

  [[nodiscard]] std::span<const char* const> Get() const { return view_; }

 private:
  // Where the arguments are not used in place.
  std::vector<std::string> texts_;
  std::vector<const char*> values_;
  std::span<const char* const> view_;
};

/// Prepares the process for file access; must be called first. Afterwards a failed write is an
/// error and never a signal that ends the process, and a file opened later never gets the
/// descriptor of a standard stream that the caller had closed. On Windows errors open no dialog,
/// and standard error is buffered until it is flushed.
void PrepareProcess();

/// Makes `path` the working directory.
[[nodiscard]] bool EnterDirectory(const CText& path);

/// Creates the directory `path`; false when anything of that name exists.
[[nodiscard]] bool MakeDirectory(const CText& path);

/// Removes the directory `path`, which must be empty.
[[nodiscard]] bool DeleteDirectory(const CText& path);

/// Size in bytes of the buffer for the working directory's path, with its NUL.
inline constexpr std::size_t kWorkingDirectorySize = 260;

/// Assigns the path of the working directory. False, and `path` unchanged, when it is unavailable
/// or does not fit kWorkingDirectorySize.
[[nodiscard]] bool GetWorkingDirectory(CText& path);

/// Opens a stream of the C library; null when that fails.
[[nodiscard]] std::FILE* OpenStream(const CText& path, const char* mode);

/// Removes the file `path`.
[[nodiscard]] bool RemoveFile(const CText& path);

/// Identifies a file or directory independently of its names.
struct TFileIdentity {
  std::uint64_t volume = 0;
  std::array<std::uint64_t, 2> file{};  ///< All zero: not known.
  bool operator==(const TFileIdentity&) const = default;
};

/// The identity of the working directory, if the volume has identities.
[[nodiscard]] std::optional<TFileIdentity> GetWorkingDirectoryIdentity();

/// Whether `name` matches `pattern`, in which `*` matches any characters and `?` one. Case is
/// ignored. The pattern `*.*` matches every name, also one without a full stop.
[[nodiscard]] bool MatchesPattern(std::string_view name, std::string_view pattern);

/// Whether a listing includes the identity of each directory (one system call each).
enum class Identities { kOmitted, kWanted };

/// An entry of a listing that is a directory.
struct TSubdirectory {
  std::string name;
  TFileIdentity identity;  ///< Set when the listing includes identities.
};

/// The content of a directory.
struct TDirectoryListing {
  TNameList names;  ///< ".", "..", then every other name in ascending byte order.
  /// The other names that are directories, in the same order. Symbolic links are not included.
  std::vector<TSubdirectory> subdirectories;

  /// Appends the entries of the working directory, except "." and "..", in any order.
  [[nodiscard]] bool ReadEntries(Identities identities);
};

/// Lists the working directory. The listing is a snapshot and nothing remains open. False, and
/// `listing` unchanged, when the directory cannot be read. Throws std::bad_alloc when memory is
/// insufficient.
[[nodiscard]] bool ListWorkingDirectory(Identities identities, TDirectoryListing& listing);

/// What a path refers to, as far as it matters for creating a file there.
enum class TPresence {
  kAbsent,   ///< Nothing that can be opened; also a dangling symbolic link.
  kFile,     ///< A regular file that opens for reading and is not empty.
  kBlocked,  ///< Anything else: no file can be created there.
};

/// Examines a path without reading its content.
[[nodiscard]] TPresence ProbeFile(const CText& path);

/// A regular file that is read from its start. A directory, FIFO, socket or device fails to open
/// without blocking. Owns the open file.
class TInputFile {
 public:
  TInputFile() = default;
  TInputFile(const TInputFile&) = delete;
  TInputFile& operator=(const TInputFile&) = delete;
  ~TInputFile();

  [[nodiscard]] bool Open(const CText& path);

  /// The file's size in bytes when it was opened.
  [[nodiscard]] std::uint64_t GetSize() const { return size_; }

  /// Reads up to `count` bytes and sets `count_read` to their number, which is smaller only at the
  /// end of the file. False when reading failed; the content of `buffer` is then unspecified.
  [[nodiscard]] bool Read(void* buffer, std::size_t count, std::size_t& count_read);

 private:
  /// Reads up to `count` bytes: 0 at the end of the file, less than 0 on failure.
  [[nodiscard]] std::ptrdiff_t ReadSome(std::byte* buffer, std::size_t count);

  std::intptr_t handle_ = -1;
  std::uint64_t size_ = 0;
};

/// What happens to an existing file with the name of a new one.
enum class TakenName { kKept, kReplaced };

/// A file that gets its name only when it is complete. Until then it is unnamed where the file
/// system supports that, else it has a temporary name; on Windows the system deletes it however the
/// process ends. Owns the open file; the destructor discards it unless it was published.
class TNewFile {
 public:
  TNewFile() = default;
  TNewFile(const TNewFile&) = delete;
  TNewFile& operator=(const TNewFile&) = delete;
  ~TNewFile() { Discard(); }

  /// Creates a file, to be named `path`, in the directory of that path. Whether the name is free is
  /// known only when the file is published. Fails when a file is open already. A name that no file
  /// of this system can have counts as a failed write.
  [[nodiscard]] bool Open(const CText& path);
  [[nodiscard]] bool IsOpen() const { return handle_ != -1; }

  /// Writes all bytes at the end; false when any of them was not written.
  [[nodiscard]] bool Write(const void* bytes, std::size_t count);

  /// Gives the file its name, in one step, and closes it. False when that failed; the file is then
  /// discarded, and HasWriteFailed() distinguishes a full or failing disk from a name that exists
  /// or is refused. A file with a failed write is never published.
  [[nodiscard]] bool Publish(TakenName taken = TakenName::kKept);

  /// Closes and removes a file that was not published.
  void Discard();

  /// Whether content could not be stored since the file was opened, which may be detected only by
  /// Publish. Keeps its value until the next Open.
  [[nodiscard]] bool HasWriteFailed() const { return write_failed_; }

 private:
  /// Opens the file without its name.
  [[nodiscard]] bool OpenUnpublished();
  /// Opens the file under a temporary name.
  [[nodiscard]] bool OpenTemporary();
  /// A temporary path in the directory of the file, distinguished by `number`. Its last component
  /// has at most as many characters as that of the file, so it meets the same limit of length;
  /// unless the path is long, it has at least 12.
  [[nodiscard]] std::string TemporaryPath(std::uint64_t number) const;
  /// Writes some of the bytes: how many, or less than 1 on failure.
  [[nodiscard]] std::ptrdiff_t WriteSome(const std::byte* bytes, std::size_t count);
  /// Gives the complete file its name; on failure `write_failed_` is set if content was lost.
  [[nodiscard]] bool GiveName(TakenName taken);
  [[nodiscard]] bool NameTemporaryFile();
  [[nodiscard]] bool CloseFile();

  std::intptr_t handle_ = -1;
  bool write_failed_ = false;
  std::string path_;       ///< The final name.
  std::string temporary_;  ///< The temporary name; empty while the file is unnamed.
};

}  // namespace zaf
