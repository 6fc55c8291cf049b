#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "foundation/CText.h"
#include "foundation/FileSystem.h"
#include "foundation/Paths.h"

namespace zaf {
namespace {

/// Flags of every input: no waiting for a FIFO, no controlling terminal.
constexpr int kInputFlags = O_RDONLY | O_NOCTTY | O_CLOEXEC | O_NONBLOCK;
/// Permissions of a new file and directory, before the process's mask.
constexpr mode_t kFileMode = 0666;
constexpr mode_t kDirectoryMode = 0777;

int Descriptor(std::intptr_t handle) { return static_cast<int>(handle); }

/// Repeats a system call that a signal interrupted.
template <class Call>
auto Retry(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

TFileIdentity IdentityOf(const struct stat& info) {
  return {static_cast<std::uint64_t>(info.st_dev), {static_cast<std::uint64_t>(info.st_ino)}};
}

/// Returns what exists at a path; none if it cannot be examined, with the reason in errno.
std::optional<struct stat> Examine(std::string_view path) {
  struct stat info {};
  if (stat(std::string(path).c_str(), &info) != 0) return std::nullopt;
  return info;
}

/// The directory part of a path, in which a new file of that path is created.
std::string DirectoryOf(const std::string& path) {
  const std::size_t separator = path.rfind(kPathSeparator);
  if (separator == std::string::npos) return ".";
  return path.substr(0, std::max<std::size_t>(separator, 1));
}

/// Whether naming a file failed for a reason that would also have prevented creating it by that
/// name: the name is taken, or the directory refuses it.
bool IsNameRefusal(int error) {
  constexpr int kRefusals[] = {EEXIST, ENOENT, ENOTDIR, EISDIR, ENAMETOOLONG, EACCES, EROFS, ELOOP};
  return std::ranges::find(kRefusals, error) != std::end(kRefusals);
}

struct DirectoryCloser {
  void operator()(DIR* directory) const { closedir(directory); }
};

/// An open file that is closed in any case.
class TDescriptor {
 public:
  explicit TDescriptor(std::intptr_t handle) : descriptor_(Descriptor(handle)) {}
  TDescriptor(const TDescriptor&) = delete;
  TDescriptor& operator=(const TDescriptor&) = delete;
  ~TDescriptor() { close(descriptor_); }
  [[nodiscard]] int Get() const { return descriptor_; }

 private:
  int descriptor_;
};

/// Whether an entry is a directory. Sets its identity if requested or if the entry was examined.
bool IsSubdirectory(int directory, const dirent& entry, Identities identities,
                    TFileIdentity& identity) {
  const bool is_unknown = entry.d_type == DT_UNKNOWN;
  const bool is_directory = entry.d_type == DT_DIR;
  if (!is_unknown && !(is_directory && identities == Identities::kWanted)) return is_directory;
  struct stat info {};
  const bool is_known = fstatat(directory, entry.d_name, &info, AT_SYMLINK_NOFOLLOW) == 0;
  if (!is_known || !S_ISDIR(info.st_mode)) return is_directory;
  identity = IdentityOf(info);
  return true;
}

bool IsLinkToDirectory(int directory, const dirent& entry) {
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
  struct stat info {};
  return fstatat(directory, entry.d_name, &info, 0) == 0 && S_ISDIR(info.st_mode);
}

/// Calls `visit` with the descriptor of a directory and each of its entries except "." and "..".
/// False if not all entries could be read.
template <class Visitor>
bool ReadDirectory(const char* path, Visitor visit) {
  const std::unique_ptr<DIR, DirectoryCloser> directory(opendir(path));
  if (directory == nullptr) return false;
  for (;;) {
    errno = 0;
    const dirent* const entry = readdir(directory.get());
    if (entry == nullptr) return errno == 0;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") visit(dirfd(directory.get()), *entry);
  }
}

/// Gives an unnamed file a name. Systems that do not let every user link a descriptor fail with
/// ENOENT; they accept its name under /proc.
bool LinkUnnamed(int file, const char* name) {
  if (linkat(file, "", AT_FDCWD, name, AT_EMPTY_PATH) == 0) return true;
  if (errno != ENOENT) return false;
  std::array<char, 40> link;
  std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", file);
  return linkat(AT_FDCWD, link.data(), AT_FDCWD, name, AT_SYMLINK_FOLLOW) == 0;
}

/// Copies all of one open file to another.
bool CopyContent(int source, TNewFile& target) {
  if (lseek(source, 0, SEEK_SET) != 0) return false;
  std::array<std::byte, 16384> chunk;
  for (;;) {
    const ssize_t taken = Retry([&] { return read(source, chunk.data(), chunk.size()); });
    if (taken <= 0) return taken == 0;
    if (!target.Write(chunk.data(), static_cast<std::size_t>(taken))) return false;
  }
}

}  // namespace

TPathInfo LookAt(std::string_view path) {
  const auto info = Examine(path);
  if (!info) return {errno == ENOENT || errno == ENOTDIR ? PathKind::kNothing : PathKind::kUnknown};
  if (S_ISDIR(info->st_mode)) return {PathKind::kDirectory};
  if (!S_ISREG(info->st_mode)) return {PathKind::kOther};
  return {PathKind::kFile, static_cast<std::uint64_t>(info->st_size)};
}

bool AreSame(std::string_view one, std::string_view two) {
  const auto first = Examine(one), second = Examine(two);
  return first && second && IdentityOf(*first) == IdentityOf(*second);
}

bool VisitEntries(std::string_view path, const EntryVisitor& visit) {
  return ReadDirectory(std::string(path).c_str(), [&](int directory, const dirent& entry) {
    TFileIdentity identity;
    if (IsSubdirectory(directory, entry, Identities::kOmitted, identity))
      visit(entry.d_name, PathKind::kDirectory);
    else if (!IsLinkToDirectory(directory, entry))
      visit(entry.d_name, PathKind::kUnknown);
  });
}

bool CopyTime(std::string_view from, std::string_view to) {
  const auto info = Examine(from);
  if (!info) return false;
  const std::array times{timespec{0, UTIME_OMIT}, info->st_mtim};
  return utimensat(AT_FDCWD, std::string(to).c_str(), times.data(), 0) == 0;
}

bool IsNewer(std::string_view one, std::string_view two) {
  const auto first = Examine(one), second = Examine(two);
  const auto time = [](const struct stat& info) {
    return std::pair(info.st_mtim.tv_sec, info.st_mtim.tv_nsec);
  };
  return first && second && time(*first) > time(*second);
}

void PrepareProcess() {
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
  int descriptor = 0;
  do {
    descriptor = open("/dev/null", O_RDONLY | O_NOCTTY);
  } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  if (descriptor >= 0) close(descriptor);
}

TArguments::TArguments(int count, char** values) {
  PrepareProcess();
  const char* const* const first = values;
  view_ = {first, static_cast<std::size_t>(count)};
}

bool EnterDirectory(const CText& path) { return chdir(path.GetCString()) == 0; }

bool MakeDirectory(const CText& path) { return mkdir(path.GetCString(), kDirectoryMode) == 0; }

bool DeleteDirectory(const CText& path) { return rmdir(path.GetCString()) == 0; }

bool GetWorkingDirectory(CText& path) {
  std::array<char, kWorkingDirectorySize> buffer;
  if (getcwd(buffer.data(), buffer.size()) == nullptr) return false;
  path = std::string_view(buffer.data());
  return true;
}

std::FILE* OpenStream(const CText& path, const char* mode) {
  return std::fopen(path.GetCString(), mode);
}

bool RemoveFile(const CText& path) { return std::remove(path.GetCString()) == 0; }

std::optional<TFileIdentity> GetWorkingDirectoryIdentity() {
  const auto info = Examine(".");
  return info ? std::optional(IdentityOf(*info)) : std::nullopt;
}

bool TDirectoryListing::ReadEntries(Identities identities) {
  return ReadDirectory(".", [&](int directory, const dirent& entry) {
    names.Append(entry.d_name);
    TFileIdentity identity;
    if (IsSubdirectory(directory, entry, identities, identity))
      subdirectories.push_back({entry.d_name, identity});
  });
}

TPresence ProbeFile(const CText& path) {
  // Usually nothing is there, and then this is faster than opening it.
  const char* const name = path.GetCString();
  struct stat info {};
  if (stat(name, &info) != 0 || access(name, R_OK) != 0) return TPresence::kAbsent;
  return S_ISREG(info.st_mode) && info.st_size > 0 ? TPresence::kFile : TPresence::kBlocked;
}

TInputFile::~TInputFile() {
  if (handle_ != -1) close(Descriptor(handle_));
}

bool TInputFile::Open(const CText& path) {
  if (handle_ != -1) return false;
  const int descriptor = Retry([&] { return open(path.GetCString(), kInputFlags); });
  if (descriptor < 0) return false;
  struct stat info {};
  if (fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) {
    close(descriptor);
    return false;
  }
  handle_ = descriptor;
  size_ = static_cast<std::uint64_t>(info.st_size);
  return true;
}

std::ptrdiff_t TInputFile::ReadSome(std::byte* buffer, std::size_t count) {
  return Retry([&] { return read(Descriptor(handle_), buffer, count); });
}

bool TNewFile::OpenUnpublished() {
  const std::string directory = DirectoryOf(path_);
  handle_ =
      Retry([&] { return open(directory.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kFileMode); });
  if (handle_ != -1) return true;
  // The errors of file systems without unnamed files, and EISDIR on systems without O_TMPFILE.
  return (errno == EOPNOTSUPP || errno == EINVAL || errno == EISDIR) && OpenTemporary();
}

bool TNewFile::OpenTemporary() {
  constexpr int kAttempts = 16;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, 0) != sizeof number) return false;
    temporary_ = TemporaryPath(number);
    handle_ = Retry(
        [&] { return open(temporary_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kFileMode); });
    if (handle_ != -1) return true;
    if (errno != EEXIST) break;
  }
  temporary_.clear();
  return false;
}

std::ptrdiff_t TNewFile::WriteSome(const std::byte* bytes, std::size_t count) {
  return Retry([&] { return write(Descriptor(handle_), bytes, count); });
}

bool TNewFile::CloseFile() {
  // The descriptor is closed regardless of the result; an interruption loses no content.
  const int result = close(Descriptor(std::exchange(handle_, -1)));
  return result == 0 || errno == EINTR;
}

bool TNewFile::GiveName(TakenName taken) {
  if (taken == TakenName::kReplaced) {
    // Only a rename replaces a file, and only a named file can be renamed.
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, 0) != sizeof number) return false;
    const std::string path = std::exchange(path_, TemporaryPath(number));
    if (!GiveName(TakenName::kKept)) return false;
    if (rename(path_.c_str(), path.c_str()) == 0) return true;
    unlink(path_.c_str());
    return false;
  }
  if (!temporary_.empty()) return NameTemporaryFile();
  if (LinkUnnamed(Descriptor(handle_), path_.c_str())) return true;
  // ENOENT can also mean that /proc is not mounted, and file systems refuse links with various
  // errors. Making a named copy gives the actual error.
  if (errno != ENOENT && IsNameRefusal(errno)) return false;
  const TDescriptor source(std::exchange(handle_, -1));
  const bool is_open = OpenTemporary();
  write_failed_ = !is_open && !IsNameRefusal(errno);
  const bool is_copied = is_open && CopyContent(source.Get(), *this);
  if (is_open && !is_copied) write_failed_ = true;
  return is_copied && NameTemporaryFile();
}

bool TNewFile::NameTemporaryFile() {
  // Some file systems report a failed write only here.
  if (!CloseFile()) {
    write_failed_ = true;
    return false;
  }
  const char* const from = temporary_.c_str();
  const char* const to = path_.c_str();
  if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) {
    temporary_.clear();
    return true;
  }
  // Without a rename that never replaces a file, a second link is made; the first one is then
  // removed with the rest.
  if (!IsNameRefusal(errno) && linkat(AT_FDCWD, from, AT_FDCWD, to, 0) == 0) return true;
  write_failed_ = !IsNameRefusal(errno);
  return false;
}

void TNewFile::Discard() {
  if (IsOpen()) static_cast<void>(CloseFile());
  if (!temporary_.empty()) unlink(temporary_.c_str());
  temporary_.clear();
}

}  // namespace zaf
