#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define ZAF2XML_SSE2 1
#else
#define ZAF2XML_SSE2 0
#endif

/// Characters taken 16 at a time, with SSE2 where the processor has it: for those who write and
/// read documents.
namespace dom {

inline constexpr std::size_t kBlock = 16;

/// What is to be found in a text.
enum class Search {
  kControls,       ///< Below 0x20.
  kTextSpecials,   ///< `&` `<` `>` `"`
  kValueSpecials,  ///< Both.
};

/// A text of up to a block. What stands behind it does not matter.
struct ShortText {
  std::array<char, kBlock> characters;
  std::uint32_t size;
};

template <class Number>
std::uint64_t LoadNumber(const char* text) {
  Number number;
  std::memcpy(&number, text, sizeof number);
  return number;
}

/// Copies up to 16 characters, by moves that overlap.
inline void CopyShort(const char* text, std::size_t count, char* target) {
  const auto move = [=]<class Number>(Number) {
    const auto first = static_cast<Number>(LoadNumber<Number>(text));
    const auto last = static_cast<Number>(LoadNumber<Number>(text + count - sizeof(Number)));
    std::memcpy(target, &first, sizeof first);
    std::memcpy(target + count - sizeof last, &last, sizeof last);
  };
  if (count >= 8) {
    move(std::uint64_t{});
  } else if (count >= 4) {
    move(std::uint32_t{});
  } else if (count != 0) {
    const char middle = text[count / 2];
    move(std::uint8_t{});
    target[count / 2] = middle;
  }
}

/// Copies a text, most of which are short.
inline void CopyText(std::string_view text, char* target) {
  if (text.size() <= kBlock)
    CopyShort(text.data(), text.size(), target);
  else
    std::memcpy(target, text.data(), text.size());
}

/// Compares names, most of which are short, by pieces that may overlap: without a call.
inline bool AreEqualNames(std::string_view name, std::string_view other) {
  const std::size_t size = name.size();
  if (size != other.size()) return false;
  const auto is_same = [=]<class Number>(Number, std::size_t at) {
    return LoadNumber<Number>(name.data() + at) == LoadNumber<Number>(other.data() + at);
  };
  if (size >= 8) {
    for (std::size_t at = 0; at < size - 8; at += 8)
      if (!is_same(std::uint64_t{}, at)) return false;
    return is_same(std::uint64_t{}, size - 8);
  }
  if (size >= 4) return is_same(std::uint32_t{}, 0) && is_same(std::uint32_t{}, size - 4);
  if (size >= 2) return is_same(std::uint16_t{}, 0) && is_same(std::uint16_t{}, size - 2);
  return size == 0 || name.front() == other.front();
}

#if ZAF2XML_SSE2

/// The first `count` characters, at most 16, and zeros. Reads nothing behind them.
inline __m128i LoadBlock(const char* text, std::size_t count) {
  if (count == kBlock) return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
  // Two numbers that overlap; of the second what is not in the first.
  std::uint64_t low = 0;
  std::uint64_t high = 0;
  if (count > 8) {
    low = LoadNumber<std::uint64_t>(text);
    high = LoadNumber<std::uint64_t>(text + count - 8) >> 8 * (kBlock - count);
  } else if (count >= 4) {
    low = LoadNumber<std::uint32_t>(text) | LoadNumber<std::uint32_t>(text + count - 4)
                                                << 8 * (count - 4);
  } else if (count != 0) {
    low = LoadNumber<std::uint8_t>(text) |
          LoadNumber<std::uint8_t>(text + count / 2) << 8 * (count / 2) |
          LoadNumber<std::uint8_t>(text + count - 1) << 8 * (count - 1);
  }
  return _mm_set_epi64x(static_cast<std::int64_t>(high), static_cast<std::int64_t>(low));
}

/// A bit for each place in a block that has this character.
inline unsigned FindInBlock(__m128i block, char character) {
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8(character))));
}

/// Copies up to 16 characters, but writes all 16. A bit of the result for each that was found.
template <Search search>
inline unsigned CopyBlock(const char* text, std::size_t count, char* target) {
  const __m128i characters = LoadBlock(text, count);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(target), characters);
  __m128i found = _mm_setzero_si128();
  if constexpr (search == Search::kTextSpecials || search == Search::kValueSpecials) {
    // '"' and '&' differ in one bit, and so do '<' and '>'.
    found = _mm_or_si128(
        _mm_cmpeq_epi8(_mm_or_si128(characters, _mm_set1_epi8('"' ^ '&')), _mm_set1_epi8('&')),
        _mm_cmpeq_epi8(_mm_or_si128(characters, _mm_set1_epi8('<' ^ '>')), _mm_set1_epi8('>')));
  }
  if constexpr (search == Search::kControls || search == Search::kValueSpecials) {
    const __m128i control = _mm_min_epu8(characters, _mm_set1_epi8(0x1F));
    found = _mm_or_si128(found, _mm_cmpeq_epi8(control, characters));
  }
  return static_cast<unsigned>(_mm_movemask_epi8(found)) & ((1U << count) - 1);
}

#else

template <Search search>
inline unsigned CopyBlock(const char* text, std::size_t count, char* target) {
  unsigned found = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const char c = text[i];
    target[i] = c;
    const bool is_special = c == '&' || c == '<' || c == '>' || c == '"';
    const bool is_control = static_cast<unsigned char>(c) < 0x20;
    if ((is_special && (search == Search::kTextSpecials || search == Search::kValueSpecials)) ||
        (is_control && (search == Search::kControls || search == Search::kValueSpecials)))
      found |= 1U << i;
  }
  return found;
}

#endif

}  // namespace dom
