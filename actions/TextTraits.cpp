#include "actions/TextTraits.h"

#include <algorithm>
#include <cstddef>

namespace zaf {
namespace {

// Every character needs CDATA but an ASCII letter, digit, space, line feed or punctuation mark, and
// of the marks those that are markup.

#if !ZAF2XML_SSE2

constexpr bool NeedsCdata(char c) {
  const bool is_markup = c == '<' || c == '>' || c == '&' || c == '\'' || c == '"';
  return static_cast<unsigned char>(c) >= 0x7F || c == '\t' || c == '\r' || is_markup;
}

#endif

#if ZAF2XML_SSE2

__m128i Equals(__m128i characters, char value) {
  return _mm_cmpeq_epi8(characters, _mm_set1_epi8(value));
}

/// The characters below 0x20.
__m128i Low(__m128i characters) {
  return _mm_cmpeq_epi8(_mm_min_epu8(characters, _mm_set1_epi8(0x1F)), characters);
}

/// Of the characters below 0x20 those that are dropped.
unsigned Dropped(__m128i characters, __m128i low) {
  const __m128i kept = _mm_or_si128(
      _mm_or_si128(Equals(characters, '\t'), Equals(characters, '\r')), Equals(characters, '\n'));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_andnot_si128(kept, low)));
}

/// The characters that are markup somewhere in a document.
__m128i Markup(__m128i characters) {
  // '"' and '&' differ in one bit, and so do '<' and '>'.
  const __m128i quote_or_and = Equals(_mm_or_si128(characters, _mm_set1_epi8('"' ^ '&')), '&');
  const __m128i less_or_greater = Equals(_mm_or_si128(characters, _mm_set1_epi8('<' ^ '>')), '>');
  return _mm_or_si128(_mm_or_si128(quote_or_and, less_or_greater), Equals(characters, '\''));
}

unsigned NeedingCdata(__m128i characters) {
  const __m128i high = _mm_cmpeq_epi8(_mm_max_epu8(characters, _mm_set1_epi8(0x7F)), characters);
  const __m128i tab_or_return = _mm_or_si128(Equals(characters, '\t'), Equals(characters, '\r'));
  return static_cast<unsigned>(
      _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(Markup(characters), high), tab_or_return)));
}

/// Those of the first `count` characters that are dropped or need CDATA.
unsigned Special(__m128i characters, std::size_t count) {
  // As signed numbers those from 0x80 on are below 0x20, too.
  const __m128i outside =
      _mm_or_si128(_mm_cmplt_epi8(characters, _mm_set1_epi8(0x20)), Equals(characters, 0x7F));
  const __m128i special =
      _mm_or_si128(_mm_andnot_si128(Equals(characters, '\n'), outside), Markup(characters));
  return static_cast<unsigned>(_mm_movemask_epi8(special)) & ((1U << count) - 1);
}

/// The same of a text of at least so many, at most a block.
unsigned Special(const char* text, std::size_t count) {
  return Special(dom::LoadBlock(text, count), count);
}

/// The first `count` characters, at most a block.
void ExamineBlock(const char* text, std::size_t count, TTextTraits& traits) {
  const __m128i characters = dom::LoadBlock(text, count);
  const unsigned examined = (1U << count) - 1;
  traits.has_dropped |= (Dropped(characters, Low(characters)) & examined) != 0;
  traits.needs_cdata |= (NeedingCdata(characters) & examined) != 0;
}

#else

unsigned Special(const char* text, std::size_t count) {
  const auto is_special = [](char c) { return IsDroppedCharacter(c) || NeedsCdata(c); };
  return std::any_of(text, text + count, is_special) ? 1 : 0;
}

void ExamineBlock(const char* text, std::size_t count, TTextTraits& traits) {
  for (const char c : std::string_view(text, count)) {
    traits.has_dropped |= IsDroppedCharacter(c);
    traits.needs_cdata |= NeedsCdata(c);
  }
}

#endif

/// Whether any of a number of whole blocks has a character that is dropped: all that there is to
/// ask once a text needs CDATA, and most blocks of a page have not even a line feed.
bool HasDropped(const char* text, std::size_t block_count) {
#if ZAF2XML_SSE2
  for (; block_count > 0; --block_count, text += dom::kBlock) {
    const __m128i characters = dom::LoadBlock(text, dom::kBlock);
    const __m128i low = Low(characters);
    if (_mm_movemask_epi8(low) != 0 && Dropped(characters, low) != 0) return true;
  }
  return false;
#else
  return std::any_of(text, text + block_count * dom::kBlock, IsDroppedCharacter);
#endif
}

/// A text that has something special.
TTextTraits ExamineSpecialText(std::string_view text) {
  TTextTraits traits;
  while (text.size() > dom::kBlock && !traits.needs_cdata) {
    ExamineBlock(text.data(), dom::kBlock, traits);
    text.remove_prefix(dom::kBlock);
  }
  if (const std::size_t block_count = text.size() / dom::kBlock;
      block_count > 0 && traits.needs_cdata) {
    traits.has_dropped |= HasDropped(text.data(), block_count);
    text.remove_prefix(block_count * dom::kBlock);
  }
  ExamineBlock(text.data(), text.size(), traits);
  return traits;
}

}  // namespace

bool CopySimple(std::string_view text, dom::ShortText& copy) {
  copy.size = static_cast<std::uint32_t>(text.size());
#if ZAF2XML_SSE2
  const __m128i characters = dom::LoadBlock(text.data(), text.size());
  _mm_storeu_si128(reinterpret_cast<__m128i*>(copy.characters.data()), characters);
  return Special(characters, text.size()) == 0;
#else
  std::copy(text.begin(), text.end(), copy.characters.begin());
  return Special(text.data(), text.size()) == 0;
#endif
}

TTextTraits ExamineText(std::string_view text) {
  for (; text.size() > dom::kBlock; text.remove_prefix(dom::kBlock))
    if (Special(text.data(), dom::kBlock) != 0) return ExamineSpecialText(text);
  return Special(text.data(), text.size()) == 0 ? TTextTraits{} : ExamineSpecialText(text);
}

}  // namespace zaf
