#pragma once

#include <string_view>

#include "dom/Blocks.h"

namespace zaf {

/// Properties of a text that decide how it is written as XML.
struct TTextTraits {
  bool has_dropped = false;  ///< It has control characters that XML forbids.
  bool needs_cdata = false;  ///< It has characters for which a CDATA section is used.
};

/// Whether XML forbids the character: below 0x20, except tab, LF and CR.
constexpr bool IsDroppedCharacter(char c) {
  return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

/// Copies a text of at most dom::kBlock bytes. False if it has characters that are dropped or need
/// CDATA.
bool CopySimple(std::string_view text, dom::ShortText& copy);

/// Examines every character of a text.
TTextTraits ExamineText(std::string_view text);

}  // namespace zaf
