#include "actions/TextTraits.h"

#include <cstddef>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define ZAF2XML_SSE2 1
#else
#define ZAF2XML_SSE2 0
#endif

namespace zaf {
namespace {

/// Every character but an ASCII letter, digit, space, line feed or punctuation mark, and of the
/// marks those that are markup.
constexpr bool NeedsCdata(char c) {
  const bool is_markup = c == '<' || c == '>' || c == '&' || c == '\'' || c == '"';
  return static_cast<unsigned char>(c) >= 0x7F || c == '\t' || c == '\r' || is_markup;
}

void ExamineOneByOne(std::string_view text, TTextTraits& traits) {
  for (const char c : text) {
    traits.has_dropped |= IsDroppedCharacter(c);
    traits.needs_cdata |= NeedsCdata(c);
  }
}

#if ZAF2XML_SSE2

/// Both questions for 16 characters; a byte that is not zero is a yes.
struct TBlock {
  __m128i dropped = _mm_setzero_si128();
  __m128i cdata = _mm_setzero_si128();

  void Examine(__m128i c) {
    const auto equals = [](__m128i bytes, char value) {
      return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(value));
    };
    const __m128i tab_or_return = _mm_or_si128(equals(c, '\t'), equals(c, '\r'));
    const __m128i kept = _mm_or_si128(tab_or_return, equals(c, '\n'));
    const __m128i low = _mm_cmpeq_epi8(_mm_min_epu8(c, _mm_set1_epi8(0x1F)), c);
    const __m128i high = _mm_cmpeq_epi8(_mm_max_epu8(c, _mm_set1_epi8(0x7F)), c);
    // '"' and '&' differ in one bit, and so do '<' and '>'.
    const __m128i quote_or_and = equals(_mm_or_si128(c, _mm_set1_epi8('"' ^ '&')), '&');
    const __m128i less_or_greater = equals(_mm_or_si128(c, _mm_set1_epi8('<' ^ '>')), '>');
    const __m128i markup =
        _mm_or_si128(_mm_or_si128(quote_or_and, less_or_greater), equals(c, '\''));
    dropped = _mm_or_si128(dropped, _mm_andnot_si128(kept, low));
    cdata = _mm_or_si128(cdata, _mm_or_si128(_mm_or_si128(markup, high), tab_or_return));
  }
};

#endif

}  // namespace

TTextTraits ExamineText(std::string_view text) {
  TTextTraits traits;
#if ZAF2XML_SSE2
  constexpr std::size_t kBlockSize = sizeof(__m128i);
  if (text.size() >= kBlockSize) {
    const auto load = [&](std::size_t at) {
      return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
    };
    TBlock block;
    for (std::size_t at = 0; at + kBlockSize <= text.size(); at += kBlockSize)
      block.Examine(load(at));
    block.Examine(load(text.size() - kBlockSize));  // The rest, and some characters once more.
    traits.has_dropped = _mm_movemask_epi8(block.dropped) != 0;
    traits.needs_cdata = _mm_movemask_epi8(block.cdata) != 0;
    return traits;
  }
#endif
  ExamineOneByOne(text, traits);
  return traits;
}

}  // namespace zaf
