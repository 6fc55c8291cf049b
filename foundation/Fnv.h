#pragma once

#include <cstdint>
#include <string_view>

namespace zaf {

/// The 32-bit FNV-1a hash (http://www.isthe.com/chongo/tech/comp/fnv/) of a text, or of the text
/// whose hash is `hash`, continued by this one.
constexpr std::uint32_t Fnv1a(std::string_view text, std::uint32_t hash = 0x811C9DC5) {
  for (const char character : text)
    hash = (hash ^ static_cast<unsigned char>(character)) * 0x01000193;
  return hash;
}

}  // namespace zaf
