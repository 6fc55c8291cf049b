#include "fields/TextTraits.h"

#include <algorithm>
#include <cstddef>

namespace zaf {

// A text needs CDATA for every character except ASCII letters, digits, blanks, LF and punctuation
// marks that are not markup.

#if ZAF2XML_SSE2

namespace {

using dom::AnyOf;
using dom::EqualTo;
using dom::InRange;

// These return 0xFF at the place of each character of their set.

/// Tab and CR differ in one bit.
__m128i TabOrReturn(__m128i characters) {
  return EqualTo(_mm_or_si128(characters, _mm_set1_epi8('\t' ^ '\r')), '\r');
}

__m128i Dropped(__m128i characters) {
  const __m128i kept = AnyOf(TabOrReturn(characters), EqualTo(characters, '\n'));
  return _mm_andnot_si128(kept, InRange(characters, 0, 0x1F));
}

__m128i Markup(__m128i characters) {
  // '"' and '&' differ in one bit, and so do '<' and '>'.
  return AnyOf(EqualTo(_mm_or_si128(characters, _mm_set1_epi8('"' ^ '&')), '&'),
               EqualTo(_mm_or_si128(characters, _mm_set1_epi8('<' ^ '>')), '>'),
               EqualTo(characters, '\''));
}

__m128i NeedingCdata(__m128i characters) {
  const __m128i high = _mm_cmpeq_epi8(_mm_max_epu8(characters, _mm_set1_epi8(0x7F)), characters);
  return AnyOf(Markup(characters), high, TabOrReturn(characters));
}

/// The union of Dropped and NeedingCdata, with fewer instructions.
__m128i Special(__m128i characters) {
  // Signed comparison: characters from 0x80 on are negative and so below 0x20.
  const __m128i outside =
      AnyOf(_mm_cmplt_epi8(characters, _mm_set1_epi8(0x20)), EqualTo(characters, 0x7F));
  return AnyOf(_mm_andnot_si128(EqualTo(characters, '\n'), outside), Markup(characters));
}

/// Whether any of the first `count` places is marked.
bool IsAny(__m128i found, std::size_t count = dom::kBlock) {
  return (static_cast<unsigned>(_mm_movemask_epi8(found)) & ((1U << count) - 1)) != 0;
}

/// Examines a text of at least a block. The last block may overlap the one before. Once the text
/// is known to need CDATA, no branch depends on a block's content, since it is unpredictable.
TTextTraits ExamineBlocks(std::string_view text) {
  __m128i dropped = _mm_setzero_si128();
  __m128i needing = _mm_setzero_si128();
  const char* block = text.data();
  const char* const last = block + text.size() - dom::kBlock;
  for (; block < last && !IsAny(needing); block += dom::kBlock) {
    const __m128i characters = dom::LoadBlock(block, dom::kBlock);
    dropped = _mm_or_si128(dropped, Dropped(characters));
    needing = NeedingCdata(characters);
  }
  for (; block < last; block += dom::kBlock)
    dropped = _mm_or_si128(dropped, Dropped(dom::LoadBlock(block, dom::kBlock)));
  const __m128i characters = dom::LoadBlock(last, dom::kBlock);
  return {.has_dropped = IsAny(_mm_or_si128(dropped, Dropped(characters))),
          .needs_cdata = IsAny(_mm_or_si128(needing, NeedingCdata(characters)))};
}

}  // namespace

bool CopySimple(std::string_view text, dom::ShortText& copy) {
  copy.size = static_cast<std::uint32_t>(text.size());
  const __m128i characters = dom::LoadBlock(text.data(), text.size());
  _mm_storeu_si128(reinterpret_cast<__m128i*>(copy.characters.data()), characters);
  return !IsAny(Special(characters), text.size());
}

TTextTraits ExamineText(std::string_view text) {
  if (text.size() >= dom::kBlock) return ExamineBlocks(text);
  const __m128i characters = dom::LoadBlock(text.data(), text.size());
  return {.has_dropped = IsAny(Dropped(characters), text.size()),
          .needs_cdata = IsAny(NeedingCdata(characters), text.size())};
}

#else

namespace {

bool NeedsCdata(char c) {
  const bool is_markup = c == '<' || c == '>' || c == '&' || c == '\'' || c == '"';
  return static_cast<unsigned char>(c) >= 0x7F || c == '\t' || c == '\r' || is_markup;
}

}  // namespace

bool CopySimple(std::string_view text, dom::ShortText& copy) {
  copy.size = static_cast<std::uint32_t>(text.size());
  std::copy(text.begin(), text.end(), copy.characters.begin());
  const TTextTraits traits = ExamineText(text);
  return !traits.has_dropped && !traits.needs_cdata;
}

TTextTraits ExamineText(std::string_view text) {
  return {.has_dropped = std::any_of(text.begin(), text.end(), IsDroppedCharacter),
          .needs_cdata = std::any_of(text.begin(), text.end(), NeedsCdata)};
}

#endif

}  // namespace zaf
