#include "fields/TextTraits.h"

#include <algorithm>
#include <cstddef>

namespace zaf {

// Every character needs CDATA but an ASCII letter, digit, space, line feed or punctuation mark, and
// of the marks those that are markup.

#if ZAF2XML_SSE2

namespace {

__m128i Equals(__m128i characters, char value) {
  return _mm_cmpeq_epi8(characters, _mm_set1_epi8(value));
}

/// The characters that no document may hold.
__m128i Dropped(__m128i characters) {
  const __m128i low = _mm_cmpeq_epi8(_mm_min_epu8(characters, _mm_set1_epi8(0x1F)), characters);
  const __m128i kept = _mm_or_si128(
      _mm_or_si128(Equals(characters, '\t'), Equals(characters, '\r')), Equals(characters, '\n'));
  return _mm_andnot_si128(kept, low);
}

/// The characters that are markup somewhere in a document.
__m128i Markup(__m128i characters) {
  // '"' and '&' differ in one bit, and so do '<' and '>'.
  const __m128i quote_or_and = Equals(_mm_or_si128(characters, _mm_set1_epi8('"' ^ '&')), '&');
  const __m128i less_or_greater = Equals(_mm_or_si128(characters, _mm_set1_epi8('<' ^ '>')), '>');
  return _mm_or_si128(_mm_or_si128(quote_or_and, less_or_greater), Equals(characters, '\''));
}

/// The characters that only a CDATA section keeps.
__m128i NeedingCdata(__m128i characters) {
  const __m128i high = _mm_cmpeq_epi8(_mm_max_epu8(characters, _mm_set1_epi8(0x7F)), characters);
  const __m128i tab_or_return = _mm_or_si128(Equals(characters, '\t'), Equals(characters, '\r'));
  return _mm_or_si128(_mm_or_si128(Markup(characters), high), tab_or_return);
}

/// The characters that are dropped or need CDATA, in less time than asking for both.
__m128i Special(__m128i characters) {
  // As signed numbers those from 0x80 on are below 0x20, too.
  const __m128i outside =
      _mm_or_si128(_mm_cmplt_epi8(characters, _mm_set1_epi8(0x20)), Equals(characters, 0x7F));
  return _mm_or_si128(_mm_andnot_si128(Equals(characters, '\n'), outside), Markup(characters));
}

/// Whether any of the first `count` characters was found.
bool IsAny(__m128i found, std::size_t count = dom::kBlock) {
  return (static_cast<unsigned>(_mm_movemask_epi8(found)) & ((1U << count) - 1)) != 0;
}

/// A text that fills at least a block. The last block may overlap the one before. Nothing hangs on
/// a single block once it is known that the text needs CDATA: in which blocks there is a line feed
/// cannot be foreseen, and hardly any has what is dropped.
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
