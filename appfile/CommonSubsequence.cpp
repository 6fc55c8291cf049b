#include "appfile/CommonSubsequence.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>

namespace zaf {
namespace {

constexpr std::uint32_t kNone = static_cast<std::uint32_t>(-1);
constexpr std::size_t kMostPairsPerElement = 16;
constexpr std::size_t kMostFurtherPairs = 1 << 20;

/// The elements of both sequences between their common prefix and their common suffix.
using TMiddle = std::span<const std::uint32_t>;

/// Appends the pairs of a common subsequence of the middle. J. W. Hunt and T. G. Szymanski, "A Fast
/// Algorithm for Computing Longest Common Subsequences", CACM 20 (1977): the longest increasing
/// subsequence of the places at which the elements of `one` occur in `two`. The places of one
/// element are in descending order, so at most one of them is chosen.
void PairMiddle(TMiddle one, TMiddle two, std::uint32_t begin, std::vector<TIndexPair>& pairs) {
  std::unordered_map<std::uint32_t, std::vector<std::uint32_t>> places;
  for (std::size_t j = two.size(); j-- > 0;)
    places[two[j]].push_back(static_cast<std::uint32_t>(j));
  const std::size_t elements = one.size() + two.size();
  const std::size_t most_pairs =
      std::min(kMostPairsPerElement * elements, elements + kMostFurtherPairs);
  std::vector<std::uint32_t> candidates;
  std::vector<std::uint32_t> indexes;
  for (std::uint32_t i = 0; i < one.size(); ++i) {
    const auto found = places.find(one[i]);
    if (found == places.end()) continue;
    if (found->second.size() > most_pairs - candidates.size()) {
      for (std::uint32_t k = 0; k < std::min(one.size(), two.size()); ++k)
        if (one[k] == two[k]) pairs.push_back({begin + k, begin + k});
      return;
    }
    candidates.insert(candidates.end(), found->second.begin(), found->second.end());
    indexes.resize(candidates.size(), i);
  }
  for (const std::uint32_t index : FindLongestIncreasing(candidates))
    pairs.push_back({begin + indexes[index], begin + candidates[index]});
}

}  // namespace

/// Patience sorting: for each length, `last` has the end of the subsequence of that length whose
/// last value is the least. D. E. Knuth, "The Art of Computer Programming", volume 3, 5.1.4.
std::vector<std::uint32_t> FindLongestIncreasing(std::span<const std::uint32_t> values) {
  std::vector<std::uint32_t> last;
  std::vector<std::uint32_t> before(values.size());
  for (std::uint32_t i = 0; i < values.size(); ++i) {
    const auto place = std::lower_bound(
        last.begin(), last.end(), values[i],
        [&](std::uint32_t index, std::uint32_t value) { return values[index] < value; });
    before[i] = place == last.begin() ? kNone : *(place - 1);
    if (place == last.end())
      last.push_back(i);
    else
      *place = i;
  }
  for (std::size_t length = last.size(); length-- > 1;) last[length - 1] = before[last[length]];
  return last;
}

std::vector<TIndexPair> FindCommonSubsequence(std::span<const std::uint32_t> one,
                                              std::span<const std::uint32_t> two) {
  const auto differ = std::mismatch(one.begin(), one.end(), two.begin(), two.end());
  const auto begin = static_cast<std::uint32_t>(differ.first - one.begin());
  const auto rest_one = one.subspan(begin);
  const auto rest_two = two.subspan(begin);
  const auto differ_back =
      std::mismatch(rest_one.rbegin(), rest_one.rend(), rest_two.rbegin(), rest_two.rend());
  const auto end = static_cast<std::uint32_t>(differ_back.first - rest_one.rbegin());
  std::vector<TIndexPair> pairs;
  for (std::uint32_t i = 0; i < begin; ++i) pairs.push_back({i, i});
  PairMiddle(rest_one.first(rest_one.size() - end), rest_two.first(rest_two.size() - end), begin,
             pairs);
  for (std::uint32_t k = end; k > 0; --k)
    pairs.push_back(
        {static_cast<std::uint32_t>(one.size() - k), static_cast<std::uint32_t>(two.size() - k)});
  return pairs;
}

}  // namespace zaf
