#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace zaf {

/// A text in a slot of fixed width inside a record: NUL-terminated unless it fills the slot.
/// Trivially copyable; all zero when value-initialised.
template <std::size_t N>
struct TFixedText {
  static_assert(N > 0);

  char bytes[N];

  /// The characters up to the first NUL, or all N.
  [[nodiscard]] std::string_view View() const {
    const void* end = std::memchr(bytes, 0, N);
    return {bytes,
            end == nullptr ? N : static_cast<std::size_t>(static_cast<const char*>(end) - bytes)};
  }

  /// Stores the text, cut to N - 1 characters; the rest of the slot becomes zero.
  void Set(std::string_view text) {
    const std::size_t size = std::min(text.size(), N - 1);
    if (size != 0) std::memmove(bytes, text.data(), size);
    std::memset(bytes + size, 0, N - size);
  }

  [[nodiscard]] bool IsEmpty() const { return bytes[0] == 0; }
};

}  // namespace zaf
