#pragma once

#include "dom/Document.h"
#include "dom/OutputBuffer.h"

namespace dom {

/// Appends a document to `output`, byte for byte as its texts are: ISO-8859-1. Linear in the size
/// of what it writes, and without recursion.
///
/// Lines end in LF. Each child of the document is on a line of its own, and so is each child
/// of an element whose children are all elements or comments, two blanks deeper for each level up
/// to 32 levels and no further. Inside an element that has any other child, at any depth, no white
/// space is added. An element without children is `<Name/>`.
///
/// `&`, `<`, `>` and `"` are escaped in texts and attribute values, and tab, LF and CR in
/// attribute values, which would otherwise be normalised on reading. All else is written
/// unchanged, including CDATA sections, comments and instructions. A null document writes nothing.
///
/// False when memory ran out while the document was built (Document::IsComplete); then nothing is
/// written. Also false when the output has failed, and is of no use.
[[nodiscard]] bool Serialize(const Document& document, OutputBuffer& output);

}  // namespace dom
