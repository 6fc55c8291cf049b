#pragma once

#include <string_view>

#include "dom/Blocks.h"

namespace zaf {

/// What a text holds that decides how it is written as XML.
struct TTextTraits {
  bool has_dropped = false;  ///< Control characters that no document may hold.
  bool needs_cdata = false;  ///< Characters that only a CDATA section keeps to the letter.
};

/// Whether a document may not hold the character: below 0x20, but not tab, line feed or return.
constexpr bool IsDroppedCharacter(char c) {
  return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

/// Copies a text of at most a block. False when it has characters that are dropped or need CDATA.
bool CopySimple(std::string_view text, dom::ShortText& copy);

/// Looks at every character of a text, 16 at a time with SSE2 where the processor has it.
TTextTraits ExamineText(std::string_view text);

}  // namespace zaf
