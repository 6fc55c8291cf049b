#pragma once

#include "dom/Document.h"
#include "dom/OutputBuffer.h"

namespace dom {

/// Appends the document to `output` in ISO-8859-1, the encoding of its texts. Linear in the size of
/// the output, and without recursion.
///
/// Lines end in LF. Each child of the document is on a separate line, and so is each child
/// of an element whose children are all elements or comments, two blanks deeper for each level up
/// to 32 levels and no further. Inside an element that has any other child, at any depth, no white
/// space is added. An element without children is `<Name/>`.
///
/// `&`, `<`, `>` and `"` are escaped in texts and attribute values, and tab, LF and CR in
/// attribute values, which would otherwise be normalised on reading. All else is written
/// unchanged, including CDATA sections, comments and instructions. A null document writes nothing.
///
/// False when memory ran out while the document was built (Document::IsComplete), in which case
/// nothing is written, or when `output` has failed; its content is then incomplete.
[[nodiscard]] bool Serialize(const Document& document, OutputBuffer& output);

}  // namespace dom
