#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace zaf {

/// Returns the indexes, ascending, of a longest strictly increasing subsequence of `values`. Takes
/// time n log n for n values.
std::vector<std::uint32_t> FindLongestIncreasing(std::span<const std::uint32_t> values);

/// Indexes of two equal elements, one of each sequence.
struct TIndexPair {
  std::uint32_t one;
  std::uint32_t two;
};

/// Returns a longest common subsequence of two sequences: pairs of equal elements, ascending in
/// both. Takes time (n + r) log n for n elements and r possible pairs. If elements are repeated so
/// often that r exceeds 16 n, or 2^20 more than n, the result may be shorter: it pairs only
/// elements at the same distance from the end of the common prefix, and those of the common suffix.
std::vector<TIndexPair> FindCommonSubsequence(std::span<const std::uint32_t> one,
                                              std::span<const std::uint32_t> two);

}  // namespace zaf
