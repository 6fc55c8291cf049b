#include "foundation/TextSearch.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace zaf {
namespace {

using Index = std::ptrdiff_t;

/// Longest pattern in characters that the standard library searches for: its time can be the
/// product of both sizes. (For a long one it takes seconds in a text of 100 KB,
/// std::boyer_moore_searcher too: building its table takes quadratic time for a pattern that
/// repeats itself.)
constexpr std::size_t kShortPattern = 16;

/// The start and the period of the greatest suffix of the pattern in the given order.
template <class Iterator, class Fold, class Order>
std::pair<Index, Index> MaximalSuffix(Iterator pattern, Index size, Fold fold, Order before) {
  Index suffix = -1;
  Index candidate = 0;
  Index offset = 1;
  Index period = 1;
  while (candidate + offset < size) {
    const char a = fold(pattern[candidate + offset]);
    const char b = fold(pattern[suffix + offset]);
    if (before(a, b)) {
      candidate += offset;
      offset = 1;
      period = candidate - suffix;
    } else if (a != b) {
      suffix = candidate++;
      offset = period = 1;
    } else if (offset != period) {
      ++offset;
    } else {
      candidate += period;
      offset = 1;
    }
  }
  return {suffix + 1, period};
}

/// The two-way algorithm (M. Crochemore, D. Perrin: Two-way string-matching, JACM 38, 1991): the
/// pattern is split at a critical position and its right part is compared first; a mismatch there
/// determines the shift. Needs no memory and at most about 2n comparisons. Returns the first match
/// or -1; `size` is greater than 0.
template <class Iterator, class Fold>
Index TwoWaySearch(Iterator text, Index text_size, Iterator pattern, Index size, Fold fold) {
  const auto [cut, period] = std::max(MaximalSuffix(pattern, size, fold, std::less<>()),
                                      MaximalSuffix(pattern, size, fold, std::greater<>()));
  const auto same = [&](Index a, Index b) { return fold(pattern[a]) == fold(pattern[b]); };
  bool is_periodic = true;  // The part before the cut repeats with the period.
  for (Index i = 0; is_periodic && i < cut; ++i) is_periodic = same(i, i + period);
  // A periodic pattern moves by its period and keeps the length that is known to match then.
  const Index shift = is_periodic ? period : std::max(cut, size - cut) + 1;
  Index known = 0;
  for (Index place = 0; place <= text_size - size;) {
    const auto matches = [&](Index i) { return fold(pattern[i]) == fold(text[place + i]); };
    Index right = std::max(cut, known);
    while (right < size && matches(right)) ++right;
    if (right < size) {
      place += right - cut + 1;
      known = 0;
      continue;
    }
    Index left = cut;
    while (left > known && matches(left - 1)) --left;
    if (left <= known) return place;
    place += shift;
    known = is_periodic ? size - period : 0;
  }
  return -1;
}

}  // namespace

std::size_t FindForward(std::string_view text, std::string_view pattern, std::size_t start,
                        CaseSensitivity sensitivity) {
  if (start > text.size() || pattern.size() > text.size() - start) return std::string_view::npos;
  const bool is_exact = sensitivity == CaseSensitivity::kExact;
  if (pattern.empty()) return start;
  if (is_exact && pattern.size() <= kShortPattern) return text.find(pattern, start);
  const auto text_size = static_cast<Index>(text.size() - start);
  const auto size = static_cast<Index>(pattern.size());
  const char* from = text.data() + start;
  const Index place = is_exact
                          ? TwoWaySearch(from, text_size, pattern.data(), size, std::identity())
                          : TwoWaySearch(from, text_size, pattern.data(), size, ToUpper);
  return place < 0 ? std::string_view::npos : start + static_cast<std::size_t>(place);
}

std::size_t FindBackward(std::string_view text, std::string_view pattern, std::size_t end) {
  text = text.substr(0, std::min(end, text.size()));
  if (pattern.size() <= kShortPattern) return text.rfind(pattern);
  const Index place = TwoWaySearch(std::make_reverse_iterator(text.data() + text.size()),
                                   static_cast<Index>(text.size()),
                                   std::make_reverse_iterator(pattern.data() + pattern.size()),
                                   static_cast<Index>(pattern.size()), std::identity());
  if (place < 0) return std::string_view::npos;
  return text.size() - static_cast<std::size_t>(place) - pattern.size();
}

}  // namespace zaf
