#pragma once

#include <string_view>

#include "dom/dom.h"

namespace zaf {

/// Appends an element `name` with the content `text` to `parent` and returns it. An empty text
/// makes an empty element. Control characters except tab, LF and CR are dropped. The rest becomes a
/// text node if it is not blank (only spaces) and consists of ASCII letters, digits, spaces, LF and
/// punctuation marks other than `<`, `>`, `&`, `'` and `"`; otherwise a CDATA section. A section is
/// split between the brackets and the `>` of each `]]>`.
dom::Element WriteTextElement(dom::Element parent, std::string_view name, std::string_view text);

/// Appends `text` to an empty element by the same rules.
void AppendText(dom::Element element, std::string_view text,
                dom::TextOwner owner = dom::TextOwner::kDocument);

}  // namespace zaf
