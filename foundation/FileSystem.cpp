#include "foundation/FileSystem.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "foundation/CText.h"
#include "foundation/CaseFolding.h"
#include "foundation/Paths.h"

namespace zaf {
namespace {

constexpr std::string_view kSeparators = kPathSeparator == '/' ? "/" : "\\/";

}  // namespace

bool IsThere(std::string_view path) {
  const PathKind kind = LookAt(path).kind;
  return kind != PathKind::kUnknown && kind != PathKind::kNothing;
}

bool IsDirectory(std::string_view path) { return LookAt(path).kind == PathKind::kDirectory; }

bool MakeDirectories(std::string_view path) {
  std::vector<std::size_t> ends;  // The lengths of the paths of missing directories.
  std::size_t end = path.find_last_not_of(kSeparators) + 1;
  while (end > 0 && !IsDirectory(path.substr(0, end))) {
    ends.push_back(end);
    end = path.substr(0, end).find_last_of(kSeparators);
    end = path.substr(0, end + 1).find_last_not_of(kSeparators) + 1;
  }
  // Another process may create one of them at the same time.
  for (; !ends.empty(); ends.pop_back())
    static_cast<void>(MakeDirectory(CText(path.substr(0, ends.back()))));
  return IsDirectory(path);
}

bool ListWorkingDirectory(Identities identities, TDirectoryListing& listing) {
  TDirectoryListing found;
  found.names.Append(".");
  found.names.Append("..");
  if (!found.ReadEntries(identities)) return false;
  found.names.SortFrom(2);
  // std::string compares its characters as unsigned bytes, as the other list does.
  std::sort(found.subdirectories.begin(), found.subdirectories.end(),
            [](const TSubdirectory& a, const TSubdirectory& b) { return a.name < b.name; });
  listing = std::move(found);
  return true;
}

bool MatchesPattern(std::string_view name, std::string_view pattern) {
  if (pattern == "*.*") return true;
  constexpr std::size_t kNone = std::string_view::npos;
  std::size_t at_name = 0, at_pattern = 0;
  std::size_t star = kNone;  // The last `*` passed.
  std::size_t star_end = 0;  // The end of the characters that it matches so far.
  while (at_name < name.size()) {
    const char wanted = at_pattern < pattern.size() ? pattern[at_pattern] : '\0';
    if (at_pattern < pattern.size() && wanted == '*') {
      star = at_pattern++;
      star_end = at_name;
    } else if (at_pattern < pattern.size() &&
               (wanted == '?' || ToUpper(wanted) == ToUpper(name[at_name]))) {
      ++at_pattern;
      ++at_name;
    } else if (star != kNone) {
      at_pattern = star + 1;
      at_name = ++star_end;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', at_pattern) == kNone;
}

bool TInputFile::Read(void* buffer, std::size_t count, std::size_t& count_read) {
  auto* const bytes = static_cast<std::byte*>(buffer);
  std::size_t done = 0;
  while (done < count) {
    const std::ptrdiff_t taken = ReadSome(bytes + done, count - done);
    if (taken < 0) return false;
    if (taken == 0) break;
    done += static_cast<std::size_t>(taken);
  }
  count_read = done;
  return true;
}

bool TNewFile::Open(const CText& path) {
  if (IsOpen() || path.IsEmpty()) return false;
  write_failed_ = false;
  path_ = path.View();
  temporary_.clear();
  return OpenUnpublished();
}

std::string TNewFile::TemporaryPath(std::uint64_t number) const {
  // The separators of every system: one that is an ordinary character here stays in the name.
  const std::size_t begin = path_.find_last_of("\\/:") + 1;
  const auto begins_character = [](char c) { return (c & 0xC0) != 0x80; };  // Of UTF-8.
  const auto length = std::count_if(path_.begin() + static_cast<std::ptrdiff_t>(begin), path_.end(),
                                    begins_character);
  // Fewer digits could be the name of another file, or of this one. A long path may have no space
  // for more.
  constexpr std::size_t kLongPath = 200;
  const std::ptrdiff_t least = path_.size() < kLongPath ? 12 : 1;
  std::array<char, 40> name;
  std::snprintf(name.data(), name.size(), "%016llx.Zaf2Xml.tmp",
                static_cast<unsigned long long>(number));
  const std::string_view whole = name.data();
  std::string path = path_.substr(0, begin).append(
      whole.substr(0, static_cast<std::size_t>(std::max<std::ptrdiff_t>(length, least))));
  if (path.back() == '.') path.pop_back();  // Windows allows no name that ends so.
  return path;
}

bool TNewFile::Write(const void* bytes, std::size_t count) {
  const auto* const data = static_cast<const std::byte*>(bytes);
  std::size_t done = 0;
  while (done < count && !write_failed_) {
    const std::ptrdiff_t taken = WriteSome(data + done, count - done);
    write_failed_ = taken <= 0;
    if (taken > 0) done += static_cast<std::size_t>(taken);
  }
  return !write_failed_;
}

bool TNewFile::Publish(TakenName taken) {
  const bool is_named = IsOpen() && !write_failed_ && GiveName(taken);
  Discard();
  return is_named;
}

}  // namespace zaf
