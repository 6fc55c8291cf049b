#include "foundation/FileSystem.h"

#include <algorithm>

#include "foundation/CaseFolding.h"

namespace zaf {

TDirectoryListing TDirectoryListing::Begin() {
  TDirectoryListing listing;
  listing.names.Append(".");
  listing.names.Append("..");
  return listing;
}

void TDirectoryListing::Sort() {
  names.SortFrom(2);
  // Both lists compare characters as unsigned bytes.
  std::sort(subdirectories.begin(), subdirectories.end(),
            [](const TSubdirectory& a, const TSubdirectory& b) { return a.name < b.name; });
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

}  // namespace zaf
