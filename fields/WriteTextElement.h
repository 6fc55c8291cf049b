#pragma once

#include <string_view>

#include "dom/dom.h"

namespace zaf {

/// Appends an element `name` that holds `text` to `parent` and returns it. An empty text gives an
/// empty element. Otherwise control characters but tab, line feed and carriage return are dropped,
/// and what is kept becomes a text node or, when a text node would not keep it to the letter, a
/// CDATA section: when it is blank (nothing but spaces), or holds a character other than an ASCII
/// letter, digit, space, line feed or punctuation mark, or one of `<`, `>`, `&`, `'` and `"`.
/// Where `]]>` occurs, one section ends behind the brackets and the next begins at the `>`.
dom::Element WriteTextElement(dom::Element parent, std::string_view name, std::string_view text);

/// Gives an element that is there already, and empty, its text by the same rule.
void AppendText(dom::Element element, std::string_view text,
                dom::TextOwner owner = dom::TextOwner::kDocument);

}  // namespace zaf
