#pragma once

#include "dom/Document.h"
#include "dom/OutputBuffer.h"

namespace dom {

/// Appends a document to `output`, byte for byte as its texts are: ISO-8859-1. Linear in the size
/// of what it writes, and without recursion.
///
/// Lines end in LF. Each child of the document stands on a line of its own, and so does each child
/// of an element whose children are all elements or comments, two blanks deeper for each level up
/// to 32 levels and no further. Inside an element that has any other child, at any depth, no white
/// space is added. An element without children is `<Name/>`.
///
/// `&`, `<`, `>` and `"` are escaped in texts and attribute values, and tab, LF and CR in
/// attribute values, which they would else not survive. All else is written as it stands, CDATA
/// sections, comments and instructions altogether. A null document is written as nothing.
///
/// False when memory ran out while the document was built (Document::IsComplete); then nothing is
/// written. Also false when the output has failed, and is of no use.
[[nodiscard]] bool Serialize(const Document& document, OutputBuffer& output);

}  // namespace dom
