#pragma once

#include <string_view>

namespace dom {

/// Whether white space may be a piece of its own of the text of an element that holds no elements:
/// in front of or behind a CDATA section, a comment or an instruction. Hardly any document has
/// that. In the others white space between tags is layout, but where it is all that an element
/// holds, and need not be kept. Never false by mistake for a well-formed document.
bool HasBlankPieces(std::string_view document);

}  // namespace dom
