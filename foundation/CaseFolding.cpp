#include "foundation/CaseFolding.h"

#include <algorithm>

namespace zaf {

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  if (a == b) return true;  // Most equal texts are identical.
  for (std::size_t i = 0; i < a.size(); ++i)
    if (a[i] != b[i] && ToUpper(a[i]) != ToUpper(b[i])) return false;
  return true;
}

int CompareIgnoringCase(std::string_view a, std::string_view b) {
  const std::size_t size = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < size; ++i) {
    const int difference =
        static_cast<unsigned char>(ToUpper(a[i])) - static_cast<unsigned char>(ToUpper(b[i]));
    if (difference != 0) return difference;
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

}  // namespace zaf
