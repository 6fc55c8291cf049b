// The parts of the program that are specific to Windows.

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <type_traits>
#include <utility>
#include <windows.h>

#include "foundation/Attempt.h"
#include "foundation/CText.h"
#include "foundation/FileSystem.h"
#include "foundation/Paths.h"
#include "foundation/StandardPaths.h"

namespace zaf {
namespace {

HANDLE Handle(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }
std::intptr_t Number(HANDLE handle) { return reinterpret_cast<std::intptr_t>(handle); }

// A file object keeps -1 for "not open", which is INVALID_HANDLE_VALUE.
static_assert(sizeof(HANDLE) == sizeof(std::intptr_t));

struct HandleCloser {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};
struct SearchCloser {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const { FindClose(handle); }
};

/// A handle that is closed on destruction; null instead of INVALID_HANDLE_VALUE.
template <class Closer>
using TOwned = std::unique_ptr<HANDLE, Closer>;
using TOpenFile = TOwned<HandleCloser>;
using TSearch = TOwned<SearchCloser>;

template <class Owned>
Owned Own(HANDLE handle) {
  return Owned(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

/// The largest number of bytes passed to one system call.
constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;

// ---- Texts

/// Converts UTF-8 to the system's UTF-16. Ill-formed UTF-8 gives an empty text or, without the
/// flag, U+FFFD.
std::wstring ToWide(std::string_view text, DWORD flags = MB_ERR_INVALID_CHARS) {
  const auto size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_UTF8, flags, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, flags, text.data(), size, wide.data(), length);
  return wide;
}

/// Converts UTF-16 to UTF-8; half a surrogate pair becomes the replacement character.
std::string ToUtf8(std::wstring_view wide) {
  const auto length = static_cast<int>(wide.size());
  const auto convert = [&](char* text, int size) {
    return WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, text, size, nullptr, nullptr);
  };
  const int size = convert(nullptr, 0);
  std::string text(static_cast<std::size_t>(size), '\0');
  convert(text.data(), size);
  return text;
}

// ---- Paths

/// The absolute path of the working directory if it is too long for the system's own; else empty.
std::wstring long_working_directory;

bool EqualsIgnoringCase(std::wstring_view a, std::wstring_view b) {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                              static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

/// Whether any version of Windows treats the name as a device.
bool IsDeviceName(std::wstring_view name) {
  constexpr std::wstring_view kDevices[] = {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"};
  constexpr std::wstring_view kNumbered[] = {L"COM", L"LPT"};
  constexpr std::wstring_view kDigits = L"0123456789\u00B9\u00B2\u00B3";
  name = name.substr(0, name.find(L'.'));
  name = name.substr(0, name.find_last_not_of(L' ') + 1);
  const auto equals = [&](std::wstring_view device) { return EqualsIgnoringCase(name, device); };
  if (std::ranges::any_of(kDevices, equals)) return true;
  if (name.empty() || kDigits.find(name.back()) == kDigits.npos) return false;
  name.remove_suffix(1);
  return std::ranges::any_of(kNumbered, equals);
}

/// Whether Windows uses the last component of a path unchanged.
bool IsPlainName(std::wstring_view name) {
  if (name.empty() || name == L"." || name == L"..") return true;
  return name.back() != L'.' && name.back() != L' ' && !IsDeviceName(name);
}

/// The absolute path for `path`; empty when it cannot name a file or directory.
std::wstring AbsolutePath(std::string_view path) {
  constexpr std::wstring_view kVerbatim = L"\\\\?\\";
  std::wstring wide = ToWide(path);
  std::ranges::replace(wide, L'/', L'\\');
  const std::size_t drive = wide.starts_with(kVerbatim) ? kVerbatim.size() + 1 : 1;
  const std::size_t colon = wide.rfind(L':');
  // The replacement character marks a name without UTF-8 form, by which no file can be found.
  if (wide.empty() || wide.find(L'\uFFFD') != wide.npos || (colon != wide.npos && colon != drive) ||
      !IsPlainName(std::wstring_view(wide).substr(wide.rfind(L'\\') + 1)))
    return {};
  const bool is_relative = wide.front() != L'\\' && colon == wide.npos;
  if (is_relative && !long_working_directory.empty()) wide = long_working_directory + L'\\' + wide;
  const DWORD size = GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr);
  std::wstring absolute(size, L'\0');
  absolute.resize(GetFullPathNameW(wide.c_str(), size, absolute.data(), nullptr));
  return absolute.starts_with(L"\\\\.\\") ? std::wstring() : absolute;  // A device.
}

/// The same in the form that allows any length. Throws std::bad_alloc.
std::wstring MakeSystemPath(std::string_view path) {
  std::wstring absolute = AbsolutePath(path);
  if (absolute.starts_with(L"\\\\?\\") || absolute.empty()) return absolute;
  if (!absolute.starts_with(L"\\\\")) return L"\\\\?\\" + absolute;
  return L"\\\\?\\UNC" + absolute.substr(1);
}

/// The same; also empty when memory runs out.
std::wstring SystemPath(std::string_view path) {
  return Attempt([&] { return MakeSystemPath(path); }, {});
}

// ---- System calls

/// Whether naming a file failed for a reason that would also have prevented creating it by that
/// name: the name is taken, or the directory refuses it.
bool IsNameRefusal(DWORD error) {
  constexpr DWORD kRefusals[] = {
      ERROR_FILE_EXISTS,   ERROR_ALREADY_EXISTS,       ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND,
      ERROR_ACCESS_DENIED, ERROR_FILENAME_EXCED_RANGE, ERROR_WRITE_PROTECT};
  return std::ranges::find(kRefusals, error) != std::end(kRefusals);
}

/// Whether another program, a virus scanner say, has the file open at the moment.
bool IsHeld(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

/// The same for a file to be replaced: access is denied while another program has it open.
bool IsHeldOrDenied(DWORD error) { return IsHeld(error) || error == ERROR_ACCESS_DENIED; }

/// Whether the error means that nothing exists at a path.
bool IsAbsence(DWORD error) {
  constexpr DWORD kAbsences[] = {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_INVALID_NAME,
                                 ERROR_BAD_PATHNAME,   ERROR_BAD_NETPATH,    ERROR_BAD_NET_NAME};
  return std::ranges::find(kAbsences, error) != std::end(kAbsences);
}

/// Makes a call until it succeeds or fails for another reason than that the file is held, for half
/// a second at most. The last result; the system's last error is the call's.
template <class Call>
auto WhileHeld(Call call, bool (*is_held)(DWORD) = IsHeld) {
  constexpr DWORD kLongestPause = 256;
  for (DWORD pause = 1;; pause *= 2) {
    auto result = call();
    if (result || !is_held(GetLastError()) || pause > kLongestPause) return result;
    Sleep(pause);
  }
}

/// Opens an existing file or directory; null when that fails.
TOpenFile OpenExisting(const std::wstring& path, DWORD access, DWORD flags) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return WhileHeld([&] {
    return Own<TOpenFile>(
        CreateFileW(path.c_str(), access, kShareAll, nullptr, OPEN_EXISTING, flags, nullptr));
  });
}

/// The size of an open regular file; none for anything else.
std::optional<std::uint64_t> SizeOfRegularFile(HANDLE file) {
  LARGE_INTEGER size{};
  if (GetFileType(file) != FILE_TYPE_DISK || GetFileSizeEx(file, &size) == 0) return std::nullopt;
  return static_cast<std::uint64_t>(size.QuadPart);
}

/// Opens a file or directory to examine it, even if another program has it open exclusively.
TOpenFile OpenToExamine(const std::wstring& path) {
  return OpenExisting(path, FILE_READ_ATTRIBUTES, FILE_FLAG_BACKUP_SEMANTICS);
}

std::uint64_t Join(DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; }

/// The identity of a file or directory; none if the volume does not support identities.
std::optional<TFileIdentity> IdentityOf(const std::wstring& path) {
  const TOpenFile file = OpenToExamine(path);
  FILE_ID_INFO info{};
  BY_HANDLE_FILE_INFORMATION older{};
  TFileIdentity identity;
  static_assert(sizeof identity.file == sizeof info.FileId);
  if (!file) return std::nullopt;
  if (GetFileInformationByHandleEx(file.get(), FileIdInfo, &info, sizeof info) != 0) {
    std::memcpy(identity.file.data(), &info.FileId, sizeof info.FileId);
    identity.volume = info.VolumeSerialNumber;
  } else if (GetFileInformationByHandle(file.get(), &older) != 0) {
    // File systems with 64-bit identities, such as FAT.
    identity.file[0] = Join(older.nFileIndexHigh, older.nFileIndexLow);
    identity.volume = older.dwVolumeSerialNumber;
  }
  if (identity.file == TFileIdentity{}.file) return std::nullopt;
  return identity;
}

/// Reparse points of other kinds, such as those of cloud storage, are not links.
bool IsNameLink(const WIN32_FIND_DATAW& entry) {
  return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         IsReparseTagNameSurrogate(entry.dwReserved0);
}

/// Links to directories count as files.
bool IsDirectory(const WIN32_FIND_DATAW& entry) {
  return (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && !IsNameLink(entry);
}

/// Calls `visit` for each entry that matches a pattern, except "." and "..".
template <class Visit>
bool VisitFound(const std::wstring& pattern, Visit visit) {
  WIN32_FIND_DATAW entry{};
  const auto search =
      Own<TSearch>(FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &entry, FindExSearchNameMatch,
                                    nullptr, FIND_FIRST_EX_LARGE_FETCH));
  // The root of an empty volume does not even contain ".".
  if (!search) return GetLastError() == ERROR_FILE_NOT_FOUND;
  do {
    const std::string name = ToUtf8(entry.cFileName);
    if (name != "." && name != "..") visit(name, entry);
  } while (FindNextFileW(search.get(), &entry) != 0);
  return GetLastError() == ERROR_NO_MORE_FILES;
}

/// The modification time of a file; none on failure.
std::optional<FILETIME> TimeOf(std::string_view path) {
  const TOpenFile file = OpenToExamine(SystemPath(path));
  FILETIME time{};
  if (!file || GetFileTime(file.get(), nullptr, nullptr, &time) == 0) return std::nullopt;
  return time;
}

/// Sets whether the system deletes the file when its handle is closed, however the process ends.
bool SetDeletion(HANDLE file, bool is_to_be_deleted) {
  FILE_DISPOSITION_INFO info{};
  info.DeleteFile = is_to_be_deleted;
  return SetFileInformationByHandle(file, FileDispositionInfo, &info, sizeof info) != 0;
}

/// The request to rename an open file.
class TRenaming {
 public:
  TRenaming(const std::wstring& path, TakenName taken)
      : is_held_(taken == TakenName::kKept ? IsHeld : IsHeldOrDenied),
        size_(sizeof(FILE_RENAME_INFO) + path.size() * sizeof(wchar_t)),
        buffer_(std::make_unique<std::byte[]>(size_)) {
    auto* const info = new (buffer_.get()) FILE_RENAME_INFO{};
    info->ReplaceIfExists = taken == TakenName::kReplaced;
    info->FileNameLength = static_cast<DWORD>(path.size() * sizeof(wchar_t));
    std::memcpy(info->FileName, path.data(), info->FileNameLength);
  }
  /// Renames a file marked for deletion. It stays marked unless it is renamed.
  [[nodiscard]] bool Apply(HANDLE file) const {
    const auto rename = [&] {
      // A file marked for deletion cannot be renamed.
      if (SetDeletion(file, false) &&
          SetFileInformationByHandle(file, FileRenameInfo, buffer_.get(),
                                     static_cast<DWORD>(size_)) != 0)
        return true;
      const DWORD error = GetLastError();
      SetDeletion(file, true);
      SetLastError(error);
      return false;
    };
    return WhileHeld(rename, is_held_);
  }

 private:
  bool (*is_held_)(DWORD);
  std::size_t size_;
  std::unique_ptr<std::byte[]> buffer_;
};

}  // namespace

std::filesystem::path ToPath(std::string_view text) {
  std::wstring wide = ToWide(text, 0);
  const auto is_separator = [](wchar_t c) { return c == L'\\' || c == L'/'; };
  while (wide.size() > 1 && is_separator(wide.back()) && wide[wide.size() - 2] != L':')
    wide.pop_back();
  return wide;
}

std::string ToText(const std::filesystem::path& path) { return ToUtf8(path.native()); }

std::filesystem::path StreamPath(std::string_view path) { return SystemPath(path); }

TPathInfo LookAt(std::string_view path) {
  const std::wstring name = SystemPath(path);
  if (name.empty()) return {};
  const TOpenFile file = OpenToExamine(name);
  if (!file) return {IsAbsence(GetLastError()) ? PathKind::kNothing : PathKind::kUnknown};
  BY_HANDLE_FILE_INFORMATION info{};
  if (GetFileType(file.get()) != FILE_TYPE_DISK) return {PathKind::kOther};
  if (GetFileInformationByHandle(file.get(), &info) == 0) return {};
  if ((info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return {PathKind::kDirectory};
  return {PathKind::kFile, Join(info.nFileSizeHigh, info.nFileSizeLow)};
}

bool AreSame(std::string_view one, std::string_view two) {
  const auto first = IdentityOf(SystemPath(one));
  return first && first == IdentityOf(SystemPath(two));
}

bool VisitEntries(std::string_view directory, const EntryVisitor& visit) {
  std::string pattern(directory);
  if (pattern.find_last_of("\\/:") + 1 != pattern.size()) pattern += '\\';
  return VisitFound(SystemPath(pattern += '*'), [&](const std::string& name, const auto& entry) {
    if (IsDirectory(entry))
      visit(name, PathKind::kDirectory);
    else if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
      visit(name, PathKind::kUnknown);
  });
}

bool CopyTime(std::string_view from, std::string_view to) {
  const std::optional<FILETIME> time = TimeOf(from);
  const TOpenFile file = OpenExisting(SystemPath(to), FILE_WRITE_ATTRIBUTES, 0);
  return time && file && SetFileTime(file.get(), nullptr, nullptr, &*time) != 0;
}

bool IsNewer(std::string_view one, std::string_view two) {
  const std::optional<FILETIME> first = TimeOf(one), second = TimeOf(two);
  return first && second && CompareFileTime(&*first, &*second) > 0;
}

void PrepareProcess() {
  // Errors are returned without a dialog.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  // Otherwise the C library writes to this stream byte by byte.
  std::setvbuf(stderr, nullptr, _IOFBF, BUFSIZ);
}

TArguments::TArguments(int count, wchar_t** values) {
  PrepareProcess();
  for (int i = 0; i < count; ++i) texts_.push_back(ToUtf8(values[i]));
  for (const std::string& text : texts_) values_.push_back(text.c_str());
  view_ = values_;
}

bool EnterDirectory(const CText& path) {
  // The system's working directory has at most MAX_PATH characters, including the separator at its
  // end and the NUL.
  constexpr std::size_t kLongest = MAX_PATH - 2;
  const auto enter = [&] {
    std::wstring directory = AbsolutePath(path.GetCString());
    if (directory.empty()) return false;
    if (directory.size() <= kLongest) {
      if (SetCurrentDirectoryW(directory.c_str()) == 0) return false;
      long_working_directory.clear();
      return true;
    }
    const DWORD attributes = GetFileAttributesW(SystemPath(path.GetCString()).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
      return false;
    // Paths from the root of a drive are relative to the drive of the system's working directory,
    // so that is changed to the same drive.
    const std::size_t end = directory.rfind(L'\\', kLongest - 1);
    SetCurrentDirectoryW(directory.substr(0, end + 1).c_str());
    long_working_directory = std::move(directory);
    return true;
  };
  return Attempt(enter, false);
}

bool MakeDirectory(const CText& path) {
  return CreateDirectoryW(SystemPath(path.GetCString()).c_str(), nullptr) != 0;
}

bool DeleteDirectory(const CText& path) {
  const std::wstring name = SystemPath(path.GetCString());
  return WhileHeld([&] { return RemoveDirectoryW(name.c_str()) != 0; });
}

bool GetWorkingDirectory(CText& path) {
  std::array<wchar_t, kWorkingDirectorySize> buffer;
  const DWORD length = GetCurrentDirectoryW(static_cast<DWORD>(buffer.size()), buffer.data());
  if (!long_working_directory.empty() || length == 0 || length >= buffer.size()) return false;
  const std::string text = ToUtf8({buffer.data(), length});
  if (text.size() >= kWorkingDirectorySize) return false;
  path = std::string_view(text);
  return true;
}

std::FILE* OpenStream(const CText& path, const char* mode) {
  return _wfopen(SystemPath(path.GetCString()).c_str(), ToWide(mode).c_str());
}

bool RemoveFile(const CText& path) {
  return DeleteFileW(SystemPath(path.GetCString()).c_str()) != 0;
}

std::optional<TFileIdentity> GetWorkingDirectoryIdentity() { return IdentityOf(SystemPath(".")); }

bool TDirectoryListing::ReadEntries(Identities identities) {
  return VisitFound(SystemPath("*"), [&](const std::string& name, const auto& entry) {
    names.Append(name);
    if (!IsDirectory(entry)) return;
    TFileIdentity identity;
    if (identities == Identities::kWanted)
      identity = IdentityOf(SystemPath(name)).value_or(TFileIdentity{});
    subdirectories.push_back({name, identity});
  });
}

TPresence ProbeFile(const CText& path) {
  const TOpenFile file =
      OpenExisting(SystemPath(path.GetCString()), GENERIC_READ, FILE_ATTRIBUTE_NORMAL);
  if (!file) return IsHeld(GetLastError()) ? TPresence::kFile : TPresence::kAbsent;
  return SizeOfRegularFile(file.get()).value_or(0) > 0 ? TPresence::kFile : TPresence::kBlocked;
}

TInputFile::~TInputFile() {
  if (handle_ != -1) CloseHandle(Handle(handle_));
}

bool TInputFile::Open(const CText& path) {
  if (handle_ != -1) return false;
  TOpenFile file =
      OpenExisting(SystemPath(path.GetCString()), GENERIC_READ, FILE_FLAG_SEQUENTIAL_SCAN);
  const std::optional<std::uint64_t> size = file ? SizeOfRegularFile(file.get()) : std::nullopt;
  if (!size) return false;
  handle_ = Number(file.release());
  size_ = *size;
  return true;
}

std::ptrdiff_t TInputFile::ReadSome(std::byte* buffer, std::size_t count) {
  const auto wanted = static_cast<DWORD>(std::min(count, kMostAtOnce));
  DWORD taken = 0;
  if (ReadFile(Handle(handle_), buffer, wanted, &taken, nullptr) == 0) return -1;
  return static_cast<std::ptrdiff_t>(taken);
}

bool TNewFile::OpenUnpublished() {
  if (MakeSystemPath(path_).empty()) {
    write_failed_ = true;
    return false;
  }
  return OpenTemporary();
}

bool TNewFile::OpenTemporary() {
  constexpr int kAttempts = 16;
  // Multiplying by an odd number makes the first digits differ as well.
  constexpr std::uint64_t kOddNumber = 0x9E3779B97F4A7C15;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    LARGE_INTEGER ticks{};
    QueryPerformanceCounter(&ticks);
    const std::uint64_t number = static_cast<std::uint64_t>(ticks.QuadPart) + GetCurrentProcessId();
    const std::wstring path = MakeSystemPath(TemporaryPath(number * kOddNumber));
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr,
                                    CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    handle_ = Number(file);
    if (!IsOpen()) {
      // While a file of that name is being deleted, access is denied.
      if (GetLastError() == ERROR_FILE_EXISTS || GetLastError() == ERROR_ACCESS_DENIED) continue;
      return false;
    }
    if (SetDeletion(file, true)) return true;
    Discard();
    DeleteFileW(path.c_str());
    write_failed_ = true;
    return false;
  }
  return false;
}

std::ptrdiff_t TNewFile::WriteSome(const std::byte* bytes, std::size_t count) {
  const auto wanted = static_cast<DWORD>(std::min(count, kMostAtOnce));
  DWORD taken = 0;
  if (WriteFile(Handle(handle_), bytes, wanted, &taken, nullptr) == 0) return -1;
  return static_cast<std::ptrdiff_t>(taken);
}

bool TNewFile::GiveName(TakenName taken) {
  const HANDLE file = Handle(handle_);
  const TRenaming renaming(MakeSystemPath(path_), taken);
  if (renaming.Apply(file)) return true;
  write_failed_ = !IsNameRefusal(GetLastError());
  return false;
}

void TNewFile::Discard() {
  if (IsOpen()) CloseHandle(Handle(std::exchange(handle_, -1)));
}

}  // namespace zaf
