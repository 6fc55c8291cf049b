#pragma once

#include <string_view>

#include "dom/dom.h"
#include "fields/TXmlContext.h"

namespace zaf {

// These functions write texts. They report to an observer the control characters that XML forbids
// and, except in attributes, CRs.

/// Appends an element `name` with the content `text` to the scope's and returns it. An empty text
/// makes an empty element. Control characters except tab, LF and CR are dropped. The rest becomes a
/// text node if it is not blank (only spaces) and consists of ASCII letters, digits, spaces, LF and
/// punctuation marks other than `<`, `>`, `&`, `'` and `"`; otherwise a CDATA section. A section is
/// split between the brackets and the `>` of each `]]>`.
dom::Element WriteTextElement(const TXmlWriteScope& scope, std::string_view name,
                              std::string_view text);

/// Appends `text` to the scope's element, which is empty, by the same rules. `name` is for the
/// observer.
void AppendText(const TXmlWriteScope& scope, std::string_view name, std::string_view text,
                dom::TextOwner owner = dom::TextOwner::kDocument);

/// Appends an attribute to the scope's element, without control characters.
void WriteTextAttribute(const TXmlWriteScope& scope, std::string_view name, std::string_view value);

}  // namespace zaf
