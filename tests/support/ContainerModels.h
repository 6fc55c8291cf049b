#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

#include "foundation/CaseFolding.h"

/// Models of the containers, made with the standard library.
namespace zaf::test {

inline std::string Folded(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), ToUpper);
  return text;
}

/// A buffer's bytes and its capacity by the rules: the first reservation and a shrinking one are
/// exact, a growing one is rounded to the next multiple of 16, or 4096; it shrinks by 32 bytes or
/// more.
struct TBufferModel {
  std::string bytes;
  std::size_t capacity = 0;

  void Reserve(std::size_t size) {
    if (size <= capacity && capacity - size < 32) return;
    const std::size_t unit = capacity > 4096 ? 4096 : 16;
    const bool grows = capacity != 0 && size > capacity;
    capacity = grows ? (size / unit + 1) * unit : size;
    bytes.resize(std::min(bytes.size(), capacity));
  }
  void Set(const std::string& other) {
    Reserve(other.size());
    bytes = other;
  }
  /// On an empty buffer this sets the content, whatever the position.
  void Splice(std::size_t position, std::size_t count, const std::string& other) {
    if (bytes.empty()) return Set(other);
    bytes.replace(std::min(position, bytes.size()), count, other);
  }
};

/// Replaces step by step: find, splice, continue after the replacement.
inline std::string Replaced(std::string text, const std::string& find,
                            const std::string& replacement, bool is_folded,
                            std::uint32_t occurrence) {
  const std::string pattern = is_folded ? Folded(find) : find;
  std::uint32_t number = 0;
  for (std::size_t i = 0; !find.empty();) {
    i = (is_folded ? Folded(text) : text).find(pattern, i);
    if (i == std::string::npos) break;
    const bool is_chosen = ++number == occurrence || occurrence == 0;
    if (is_chosen) text.replace(i, find.size(), replacement);
    i += is_chosen ? replacement.size() : find.size();
  }
  return text;
}

}  // namespace zaf::test
