#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace zaf {

/// The indexes, ascending, of a longest strictly increasing subsequence of `values`. Takes time
/// n log n for n values.
std::vector<std::uint32_t> FindLongestIncreasing(std::span<const std::uint32_t> values);

/// Indexes of two equal elements, one of each sequence.
struct TIndexPair {
  std::uint32_t one;
  std::uint32_t two;
};

/// A longest common subsequence of two sequences: pairs of equal elements, ascending in both. Takes
/// time (n + r) log n for n elements and r possible pairs. Where elements are repeated so often
/// that r exceeds 16 n, or 2^20 more than n, only those are paired that are equal at the same
/// distance from the common beginning, or belong to the common end.
std::vector<TIndexPair> FindCommonSubsequence(std::span<const std::uint32_t> one,
                                              std::span<const std::uint32_t> two);

}  // namespace zaf
