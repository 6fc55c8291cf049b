#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "dom/CharacterClasses.h"

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define ZAF2XML_SSE2 1
#else
#define ZAF2XML_SSE2 0
#endif

/// Finds, compares and copies characters, 16 at a time with SSE2 where the processor has it. The
/// parser, the serialiser and the writer of texts use it for every character.
namespace dom {

inline constexpr std::size_t kBlock = 16;

/// The set of characters to find in a text.
enum class Search {
  kReturn,         ///< CR.
  kControls,       ///< Below 0x20.
  kTextSpecials,   ///< `&` `<` `>` `"`
  kValueSpecials,  ///< The union of both.
  kIllegal,        ///< Below 0x20, except tab, LF and CR.
  kUnusual,        ///< All but LF and printable ASCII characters without a meaning in XML.
  kNeedsCData,     ///< The same without those that are illegal.
  // Sets at which the parser stops. Here controls are those that XML does not allow, and CR.
  kNotSpace,  ///< All but blank, tab, LF and CR.
  kNotName,   ///< All but ASCII letters and digits and `-` `.` `:` `_`.
  kTextEnd,   ///< `<` `&` `]` and controls.
  kCDataEnd,  ///< `]` and controls.
  kValueEnd,  ///< `<` `&` `"` `'`, controls, tab and LF.
};

/// A text of at most one block. The rest of the block is ignored.
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

/// Copies up to 16 characters by moves that may overlap.
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

/// Copies a text, optimised for short ones.
inline void CopyText(std::string_view text, char* target) {
  if (text.size() <= kBlock)
    CopyShort(text.data(), text.size(), target);
  else
    std::memcpy(target, text.data(), text.size());
}

/// Compares names, optimised for short ones: by pieces that may overlap, without a call.
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

/// Loads the first `count` characters, at most 16, followed by zeros. Reads nothing after them.
/// Always inlined: most callers pass a constant.
[[gnu::always_inline]] inline __m128i LoadBlock(const char* text, std::size_t count) {
  if (count == kBlock) return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
  // Loads two numbers that may overlap, and shifts out of the second what the first contains.
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

/// Returns 0xFF in each place of a block that has this character.
inline __m128i EqualTo(__m128i block, char character) {
  return _mm_cmpeq_epi8(block, _mm_set1_epi8(character));
}

/// Returns 0xFF in each place of a block that has a character from `first` to `first + count`.
inline __m128i InRange(__m128i block, char first, char count) {
  const __m128i distance = _mm_sub_epi8(block, _mm_set1_epi8(first));
  return _mm_cmpeq_epi8(_mm_min_epu8(distance, _mm_set1_epi8(count)), distance);
}

inline __m128i AnyOf(__m128i one) { return one; }
template <class... Others>
__m128i AnyOf(__m128i one, Others... others) {
  return _mm_or_si128(one, AnyOf(others...));
}

/// Returns a bit for each place of a block that has a character of the set.
template <Search search>
inline unsigned FoundIn(__m128i block) {
  const auto bits = [](__m128i found) { return static_cast<unsigned>(_mm_movemask_epi8(found)); };
  const auto equal = [=](char character) { return EqualTo(block, character); };
  // '"' and '&' differ in one bit, and so do '<' and '>'.
  const auto specials = [=] {
    return AnyOf(EqualTo(_mm_or_si128(block, _mm_set1_epi8('"' ^ '&')), '&'),
                 EqualTo(_mm_or_si128(block, _mm_set1_epi8('<' ^ '>')), '>'));
  };
  // So do tab and CR.
  const auto tab_or_return = [=] {
    return EqualTo(_mm_or_si128(block, _mm_set1_epi8('\t' ^ '\r')), '\r');
  };
  const __m128i below_blank = InRange(block, 0, 0x1F);
  const auto controls = [=] {
    return _mm_andnot_si128(AnyOf(equal('\t'), equal('\n')), below_blank);
  };
  switch (search) {
    case Search::kReturn:
      return bits(equal('\r'));
    case Search::kControls:
      return bits(below_blank);
    case Search::kTextSpecials:
      return bits(specials());
    case Search::kValueSpecials:
      return bits(AnyOf(specials(), below_blank));
    case Search::kIllegal:
      return bits(_mm_andnot_si128(AnyOf(tab_or_return(), equal('\n')), below_blank));
    case Search::kUnusual: {
      // As signed numbers, characters that are not ASCII are below 0.
      const __m128i other = AnyOf(_mm_cmplt_epi8(block, _mm_set1_epi8(0x20)), equal(0x7F));
      return bits(AnyOf(specials(), equal('\''), _mm_andnot_si128(equal('\n'), other)));
    }
    case Search::kNeedsCData:
      return bits(AnyOf(specials(), equal('\''), tab_or_return(), InRange(block, 0x7F, '\x80')));
    case Search::kNotSpace:
      return bits(AnyOf(equal(' '), equal('\n'), equal('\t'), equal('\r'))) ^ 0xFFFF;
    case Search::kNotName:
      return bits(AnyOf(InRange(_mm_or_si128(block, _mm_set1_epi8(0x20)), 'a', 25),
                        InRange(block, '0', 10), InRange(block, '-', 1), equal('_'))) ^
             0xFFFF;
    case Search::kTextEnd:
      return bits(AnyOf(equal('<'), equal('&'), equal(']'), controls()));
    case Search::kCDataEnd:
      return bits(AnyOf(equal(']'), controls()));
    case Search::kValueEnd:
      return bits(AnyOf(equal('<'), equal('&'), equal('"'), equal('\''), below_blank));
  }
  return 0;
}

/// The same for the first `count` characters of a text, at most 16. Reads nothing after them.
template <Search search>
inline unsigned FindInBlock(const char* text, std::size_t count) {
  return FoundIn<search>(LoadBlock(text, count)) & ((1U << count) - 1);
}

/// Copies up to 16 characters, but writes all 16. Returns a bit for each character of the set.
template <Search search>
inline unsigned CopyBlock(const char* text, std::size_t count, char* target) {
  const __m128i characters = LoadBlock(text, count);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(target), characters);
  return FoundIn<search>(characters) & ((1U << count) - 1);
}

inline unsigned FindHighInBlock(const char* text, std::size_t count) {
  return static_cast<unsigned>(_mm_movemask_epi8(LoadBlock(text, count)));
}

#else

template <Search search>
constexpr bool IsFound(char c) {
  const bool is_below_blank = static_cast<unsigned char>(c) < 0x20;
  const bool is_control = is_below_blank && c != '\t' && c != '\n';
  const bool is_special = c == '&' || c == '<' || c == '>' || c == '"';
  const bool is_unusual = is_special || c == '\'' || static_cast<unsigned char>(c) >= 0x7F;
  switch (search) {
    case Search::kReturn:
      return c == '\r';
    case Search::kControls:
      return is_below_blank;
    case Search::kTextSpecials:
      return is_special;
    case Search::kValueSpecials:
      return is_special || is_below_blank;
    case Search::kIllegal:
      return is_control && c != '\r';
    case Search::kUnusual:
      return (is_below_blank && c != '\n') || is_unusual;
    case Search::kNeedsCData:
      return c == '\t' || c == '\r' || is_unusual;
    case Search::kNotSpace:
      return !IsSpace(c);
    case Search::kNotName:
      return !IsAsciiLetter(c) && (c < '-' || c > ':' || c == '/') && c != '_';
    case Search::kTextEnd:
      return c == '<' || c == '&' || c == ']' || is_control;
    case Search::kCDataEnd:
      return c == ']' || is_control;
    case Search::kValueEnd:
      return c == '<' || c == '&' || c == '"' || c == '\'' || is_below_blank;
  }
  return false;
}

template <Search search>
inline unsigned FindInBlock(const char* text, std::size_t count) {
  unsigned found = 0;
  for (std::size_t i = 0; i < count; ++i) found |= (IsFound<search>(text[i]) ? 1U : 0U) << i;
  return found;
}

template <Search search>
inline unsigned CopyBlock(const char* text, std::size_t count, char* target) {
  std::memcpy(target, text, count);
  return FindInBlock<search>(text, count);
}

inline unsigned FindHighInBlock(const char* text, std::size_t count) {
  unsigned found = 0;
  for (std::size_t i = 0; i < count; ++i) found |= (IsHigh(text[i]) ? 1U : 0U) << i;
  return found;
}

#endif

/// Whether characters that are not ASCII are found as well.
enum class HighCharacters : unsigned { kPassed = 0, kFound = 0xFFFF };

/// FindInBlock, including characters that are not ASCII if `high` says so.
template <Search search>
inline unsigned FindInBlock(const char* text, std::size_t count, HighCharacters high) {
  return FindInBlock<search>(text, count) |
         (FindHighInBlock(text, count) & static_cast<unsigned>(high));
}

/// The same for a text shorter than a block, as at the end of a document.
template <Search search>
const char* FindInRest(const char* text, const char* end, HighCharacters high) {
  const unsigned found = FindInBlock<search>(text, static_cast<std::size_t>(end - text), high);
  return found == 0 ? end : text + std::countr_zero(found);
}

/// Returns the first character of the set; `end` if not found.
template <Search search>
inline const char* Find(const char* text, const char* end,
                        HighCharacters high = HighCharacters::kPassed) {
  for (; static_cast<std::size_t>(end - text) >= kBlock; text += kBlock) {
    const unsigned found = FindInBlock<search>(text, kBlock, high);
    if (found != 0) return text + std::countr_zero(found);
  }
  return FindInRest<search>(text, end, high);
}

/// Copies the characters before the first one of the set and removes them from `text`. Returns the
/// end of the copy; up to a block after it may be overwritten.
template <Search search>
inline char* CopyUpTo(std::string_view& text, char* target,
                      HighCharacters high = HighCharacters::kPassed) {
  const char* p = text.data();
  std::size_t left = text.size();
  unsigned found = 0;
  const auto copy = [&](std::size_t count) {
    found = CopyBlock<search>(p, count, target);
    if (high == HighCharacters::kFound) found |= FindHighInBlock(p, count);
    return found == 0;
  };
  for (; left > kBlock && copy(kBlock); left -= kBlock) {
    p += kBlock;
    target += kBlock;
  }
  if (found == 0) copy(left);
  const std::size_t count = found == 0 ? left : static_cast<std::size_t>(std::countr_zero(found));
  text = {p + count, left - count};
  return target + count;
}

}  // namespace dom
