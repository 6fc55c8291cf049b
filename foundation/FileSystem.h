#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/Status.h"
#include "foundation/TNameList.h"

/// What the program needs of the platform's file system. FileSystemPosix.cpp and
/// FileSystemWindows.cpp implement it, each on its own system, FileSystem.cpp what they share.
///
/// On Windows paths are UTF-8 and may be as long as the system allows (some 32,000 characters),
/// the working directory's included. Paths that Windows would take for something else fail there:
/// devices (`con`, `nul.txt`), streams (`a:b`), names that end with a full stop or a blank.
namespace zaf {

class CText;

#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
/// Whether equal directories commonly have different names: by case, separators, short names.
inline constexpr bool kDirectoriesHaveManyNames = true;
/// What the arguments of the program consist of.
using TArgumentCharacter = wchar_t;
#else
inline constexpr char kPathSeparator = '/';
inline constexpr bool kDirectoriesHaveManyNames = false;
using TArgumentCharacter = char;
#endif

/// The arguments of the program as texts of the program: on Windows in UTF-8.
class TArguments {
 public:
  TArguments(int count, TArgumentCharacter** values);

  [[nodiscard]] const std::vector<const char*>& Get() const { return values_; }

 private:
  std::vector<std::string> texts_;  ///< Where the arguments are not used in place.
  std::vector<const char*> values_;
};

/// Makes the process robust before it touches files: a write that cannot be done is an error of
/// that write and never a signal that ends the process, and no file that is opened later can take
/// the place of a standard stream that the caller had closed.
void PrepareProcess();

/// Makes `path` the working directory.
[[nodiscard]] bool EnterDirectory(const CText& path);

/// Creates the directory `path`; false when anything has that name.
[[nodiscard]] bool MakeDirectory(const CText& path);

/// Removes the directory `path`, which has to be empty.
[[nodiscard]] bool DeleteDirectory(const CText& path);

/// Bytes of the buffer that GetWorkingDirectory fills, the NUL included.
inline constexpr std::size_t kWorkingDirectorySize = 260;

/// Gives the path of the working directory. False, and `path` unchanged, when there is none or
/// when it does not fit kWorkingDirectorySize.
[[nodiscard]] bool GetWorkingDirectory(CText& path);

/// Opens a stream of the C library; null when that fails.
[[nodiscard]] std::FILE* OpenStream(const CText& path, const char* mode);

/// Removes the file `path`.
[[nodiscard]] bool RemoveFile(const CText& path);

/// Distinguishes a file or directory from every other one, whatever names it has.
struct TFileIdentity {
  std::uint64_t volume = 0;
  std::array<std::uint64_t, 2> file{};  ///< All zero: not known.
  bool operator==(const TFileIdentity&) const = default;
};

/// The identity of the working directory; none where the volume knows no identities.
[[nodiscard]] std::optional<TFileIdentity> GetWorkingDirectoryIdentity();

/// Whether `name` matches `pattern`, in which `*` stands for any characters and `?` for one. Case
/// does not count. The pattern `*.*` matches every name, also one without a full stop.
[[nodiscard]] bool MatchesPattern(std::string_view name, std::string_view pattern);

/// Whether a listing looks up the identity of each directory in it (one system call each).
enum class Identities { kOmitted, kWanted };

/// One directory in another.
struct TSubdirectory {
  std::string name;
  TFileIdentity identity;  ///< When the listing was asked for identities.
};

/// What is in a directory.
struct TDirectoryListing {
  TNameList names;  ///< ".", "..", then every other name in ascending byte order.
  /// Those of the others that are directories, in the same order. A symbolic link is none.
  std::vector<TSubdirectory> subdirectories;

  /// Appends the entries of the working directory, but for "." and "..", in any order.
  [[nodiscard]] bool ReadEntries(Identities identities);
};

/// Lists the working directory. The listing is a copy; nothing stays open and later changes of the
/// directory do not show. False, and `listing` unchanged, when the directory cannot be read.
[[nodiscard]] bool ListWorkingDirectory(Identities identities, TDirectoryListing& listing);

/// What stands at a path, as far as a new file of that name is concerned.
enum class TPresence {
  kAbsent,   ///< Nothing that can be opened: a dangling symbolic link looks like this, too.
  kFile,     ///< A regular file that opens for reading and is not empty.
  kBlocked,  ///< Anything else: no file can be created there.
};

/// Looks at a path without reading what is there.
[[nodiscard]] TPresence ProbeFile(const CText& path);

/// A regular file that is read from its start. A directory, FIFO, socket or device fails to open,
/// at once and without waiting for anybody. Owns the open file.
class TInputFile {
 public:
  TInputFile() = default;
  TInputFile(const TInputFile&) = delete;
  TInputFile& operator=(const TInputFile&) = delete;
  ~TInputFile();

  [[nodiscard]] bool Open(const CText& path);

  /// Bytes that the file had when it was opened.
  [[nodiscard]] std::uint64_t GetSize() const { return size_; }

  /// Reads up to `count` bytes and gives in `count_read` how many it took: fewer only when the
  /// file ends before. False when reading failed; nothing is to be taken from `buffer` then.
  [[nodiscard]] bool Read(void* buffer, std::size_t count, std::size_t& count_read);

 private:
  /// Reads up to `count` bytes: 0 at the end of the file, less than 0 on failure.
  [[nodiscard]] std::ptrdiff_t ReadSome(std::byte* buffer, std::size_t count);

  std::intptr_t handle_ = -1;
  std::uint64_t size_ = 0;
};

/// A file that gets its name only when it is complete, and never takes the place of another one.
/// Until then it is unnamed where the file system knows unnamed files, else it has a temporary
/// name, on Windows that of a file that the system deletes when the process ends, however it ends.
/// Owns the open file; what was not published is gone when the object is.
class TNewFile {
 public:
  TNewFile() = default;
  TNewFile(const TNewFile&) = delete;
  TNewFile& operator=(const TNewFile&) = delete;
  ~TNewFile() { Discard(); }

  /// Starts a file that is to be named `path`, in the directory of that name. Whether the name is
  /// free shows only when it is published. Fails when a file is open already. A name that no file
  /// can have on this system counts as a failed write.
  [[nodiscard]] bool Open(const CText& path);
  [[nodiscard]] bool IsOpen() const { return handle_ != -1; }

  /// Writes all of the bytes at the current position; false when that failed, also in part.
  [[nodiscard]] bool Write(const void* bytes, std::size_t count);

  /// Moves to `offset`, counted from the start.
  [[nodiscard]] bool Seek(std::uint64_t offset);

  /// Bytes written; 0 when that cannot be had.
  [[nodiscard]] std::uint64_t GetSize() const;

  /// Gives the file its name and closes it. False when that failed, and then the file is
  /// discarded; HasWriteFailed() tells a full or failing disk from a name that is taken or that
  /// the directory refuses. A file with a failed write is never published.
  [[nodiscard]] bool Publish();

  /// Closes and forgets what was not published.
  void Discard();

  /// Whether content could not be stored since the file was opened (also when that showed only at
  /// Publish). Stays until the next Open.
  [[nodiscard]] bool HasWriteFailed() const { return write_failed_; }

 private:
  /// Opens the file without its name.
  [[nodiscard]] bool OpenUnpublished();
  /// Opens the file under a temporary name.
  [[nodiscard]] bool OpenTemporary();
  /// A temporary path in the directory of the file, which differs by `number`. Its last name has at
  /// most as many characters as that of the file: whatever fits one of the two fits both.
  [[nodiscard]] std::string TemporaryPath(std::uint64_t number) const;
  /// Writes some of the bytes: how many, or less than 1 on failure.
  [[nodiscard]] std::ptrdiff_t WriteSome(const std::byte* bytes, std::size_t count);
  /// Gives the complete file its name; on failure says in `write_failed_` whether content was lost.
  [[nodiscard]] bool GiveName();
  [[nodiscard]] bool NameTemporaryFile();
  [[nodiscard]] bool CloseFile();

  std::intptr_t handle_ = -1;
  bool write_failed_ = false;
  std::string path_;       ///< The name to be.
  std::string temporary_;  ///< The temporary name; empty while the file is unnamed.
};

}  // namespace zaf
