#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zaf {

/// A hash of texts that differs from process to process, so that no file can be made to collide.
struct TSeededHash {
  std::size_t operator()(std::string_view text) const {
    return static_cast<std::size_t>(Extend(0, text));
  }

  /// The hash of one text more: `hash` is that of those before it, or 0. Lists of texts that differ
  /// only in where one text ends and the next begins have different hashes.
  static std::uint64_t Extend(std::uint64_t hash, std::string_view text);
};

}  // namespace zaf
