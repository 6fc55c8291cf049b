#include <algorithm>
#include <array>
#include <cstdio>
#include <direct.h>
#include <stdlib.h>
#include <utility>
#include <windows.h>

#include "foundation/CText.h"
#include "foundation/FileSystem.h"

namespace zaf {
namespace {

HANDLE Handle(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }
std::intptr_t Number(HANDLE handle) { return reinterpret_cast<std::intptr_t>(handle); }

// A file object keeps -1 for "not open".
static_assert(sizeof(HANDLE) == sizeof(std::intptr_t));

/// Largest piece handed to one system call.
constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;

/// Whether a name could not be given for a reason that creating the file by that name would have
/// met as well: it is taken, or the directory does not have it.
bool IsNameRefusal(DWORD error) {
  switch (error) {
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
      return true;
    default:
      return false;
  }
}

HANDLE OpenToLook(const char* path, DWORD access, DWORD flags) {
  return CreateFileA(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                     OPEN_EXISTING, flags, nullptr);
}

/// The identity of a directory; none when it cannot be had.
std::optional<TFileIdentity> IdentityOf(const char* path) {
  const HANDLE handle = OpenToLook(path, FILE_READ_ATTRIBUTES,
                                   FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT);
  if (handle == INVALID_HANDLE_VALUE) return std::nullopt;
  BY_HANDLE_FILE_INFORMATION info{};
  const bool is_known = GetFileInformationByHandle(handle, &info) != 0;
  CloseHandle(handle);
  if (!is_known) return std::nullopt;
  return TFileIdentity{info.dwVolumeSerialNumber,
                       std::uint64_t{info.nFileIndexHigh} << 32 | info.nFileIndexLow};
}

/// A search for names that is closed in any case.
class TSearch {
 public:
  explicit TSearch(HANDLE handle) : handle_(handle) {}
  TSearch(const TSearch&) = delete;
  TSearch& operator=(const TSearch&) = delete;
  ~TSearch() {
    if (IsOpen()) FindClose(handle_);
  }
  [[nodiscard]] bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  [[nodiscard]] HANDLE Get() const { return handle_; }

 private:
  HANDLE handle_;
};

/// A link to a directory is not one.
bool IsDirectory(DWORD attributes) {
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 &&
         (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
}

}  // namespace

// Such writes and such streams do no harm here.
void PrepareProcess() {}

bool EnterDirectory(const CText& path) { return _chdir(path.GetCString()) == 0; }

bool MakeDirectory(const CText& path) { return _mkdir(path.GetCString()) == 0; }

bool DeleteDirectory(const CText& path) { return _rmdir(path.GetCString()) == 0; }

bool GetWorkingDirectory(CText& path) {
  std::array<char, kWorkingDirectorySize> buffer;
  if (_getcwd(buffer.data(), static_cast<int>(buffer.size())) == nullptr) return false;
  path = std::string_view(buffer.data());
  return true;
}

std::optional<TFileIdentity> GetWorkingDirectoryIdentity() { return IdentityOf("."); }

bool ListWorkingDirectory(Identities identities, TDirectoryListing& listing) {
  WIN32_FIND_DATAA data{};
  const TSearch search(FindFirstFileA("*", &data));
  // The root of an empty volume has not even a "." to find.
  if (!search.IsOpen() && GetLastError() != ERROR_FILE_NOT_FOUND) return false;
  TDirectoryListing found = TDirectoryListing::Begin();
  bool is_whole = true;
  if (search.IsOpen()) {
    do {
      const std::string_view name = data.cFileName;
      if (name == "." || name == "..") continue;
      found.names.Append(name);
      if (!IsDirectory(data.dwFileAttributes)) continue;
      TFileIdentity identity;
      if (identities == Identities::kWanted)
        identity = IdentityOf(data.cFileName).value_or(TFileIdentity{});
      found.subdirectories.push_back({std::string(name), identity});
    } while (FindNextFileA(search.Get(), &data) != 0);
    is_whole = GetLastError() == ERROR_NO_MORE_FILES;
  }
  if (!is_whole) return false;
  found.Sort();
  listing = std::move(found);
  return true;
}

TPresence ProbeFile(const CText& path) {
  const HANDLE handle = OpenToLook(path.GetCString(), GENERIC_READ, FILE_ATTRIBUTE_NORMAL);
  if (handle == INVALID_HANDLE_VALUE) return TPresence::kAbsent;
  LARGE_INTEGER size{};
  const bool is_file = GetFileType(handle) == FILE_TYPE_DISK && GetFileSizeEx(handle, &size) != 0;
  CloseHandle(handle);
  return is_file && size.QuadPart > 0 ? TPresence::kFile : TPresence::kBlocked;
}

TInputFile::~TInputFile() {
  if (handle_ != -1) CloseHandle(Handle(handle_));
}

bool TInputFile::Open(const CText& path) {
  if (handle_ != -1) return false;
  const HANDLE handle = OpenToLook(path.GetCString(), GENERIC_READ, FILE_FLAG_SEQUENTIAL_SCAN);
  if (handle == INVALID_HANDLE_VALUE) return false;
  LARGE_INTEGER size{};
  if (GetFileType(handle) != FILE_TYPE_DISK || GetFileSizeEx(handle, &size) == 0) {
    CloseHandle(handle);
    return false;
  }
  handle_ = Number(handle);
  size_ = static_cast<std::uint64_t>(size.QuadPart);
  return true;
}

bool TInputFile::Read(void* buffer, std::size_t count, std::size_t& count_read) {
  auto* const bytes = static_cast<std::byte*>(buffer);
  std::size_t done = 0;
  while (done < count) {
    const auto wanted = static_cast<DWORD>(std::min(count - done, kMostAtOnce));
    DWORD taken = 0;
    if (ReadFile(Handle(handle_), bytes + done, wanted, &taken, nullptr) == 0) return false;
    if (taken == 0) break;
    done += taken;
  }
  count_read = done;
  return true;
}

bool TNewFile::Open(const CText& path) {
  if (IsOpen() || path.IsEmpty()) return false;
  write_failed_ = false;
  path_ = path.View();
  temporary_.clear();
  return OpenTemporary();
}

bool TNewFile::OpenTemporary() {
  constexpr int kAttempts = 16;
  const std::size_t name_begin = path_.find_last_of("\\/:") + 1;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    LARGE_INTEGER ticks{};
    QueryPerformanceCounter(&ticks);
    std::array<char, 64> name;
    std::snprintf(name.data(), name.size(), ".Zaf2Xml-%08lx%016llx.tmp", GetCurrentProcessId(),
                  static_cast<unsigned long long>(ticks.QuadPart));
    temporary_ = path_.substr(0, name_begin) + name.data();
    handle_ = Number(CreateFileA(temporary_.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                 CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (handle_ != -1) return true;
    if (GetLastError() != ERROR_FILE_EXISTS) break;
  }
  temporary_.clear();
  return false;
}

bool TNewFile::Write(const void* bytes, std::size_t count) {
  const auto* const data = static_cast<const std::byte*>(bytes);
  std::size_t done = 0;
  while (done < count && !write_failed_) {
    const auto wanted = static_cast<DWORD>(std::min(count - done, kMostAtOnce));
    DWORD taken = 0;
    if (WriteFile(Handle(handle_), data + done, wanted, &taken, nullptr) == 0 || taken == 0)
      write_failed_ = true;
    else
      done += taken;
  }
  return !write_failed_;
}

bool TNewFile::Seek(std::uint64_t offset) {
  LARGE_INTEGER distance{};
  distance.QuadPart = static_cast<LONGLONG>(offset);
  return SetFilePointerEx(Handle(handle_), distance, nullptr, FILE_BEGIN) != 0;
}

std::uint64_t TNewFile::GetSize() const {
  LARGE_INTEGER size{};
  return GetFileSizeEx(Handle(handle_), &size) != 0 ? static_cast<std::uint64_t>(size.QuadPart) : 0;
}

bool TNewFile::CloseFile() { return CloseHandle(Handle(std::exchange(handle_, -1))) != 0; }

bool TNewFile::Publish() {
  const bool is_named = IsOpen() && !write_failed_ && NameTemporaryFile();
  Discard();
  return is_named;
}

// There are no unnamed files here.
bool TNewFile::NameUnnamedFile() { return false; }

bool TNewFile::NameTemporaryFile() {
  if (!CloseFile()) {
    write_failed_ = true;
    return false;
  }
  // Without MOVEFILE_REPLACE_EXISTING a file that has the name makes it fail.
  if (MoveFileExA(temporary_.c_str(), path_.c_str(), 0) == 0) {
    write_failed_ = !IsNameRefusal(GetLastError());
    return false;
  }
  temporary_.clear();
  return true;
}

void TNewFile::Discard() {
  if (IsOpen()) static_cast<void>(CloseFile());
  if (!temporary_.empty()) ::DeleteFileA(temporary_.c_str());
  temporary_.clear();
}

}  // namespace zaf
