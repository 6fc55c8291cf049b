#pragma once

#include <cstddef>
#include <span>

#include "dom/Document.h"
#include "dom/ParseReport.h"

namespace dom {

/// Creates documents.
class DOMImplementation {
 public:
  /// Creates an empty document. Throws std::bad_alloc when memory is insufficient even for that.
  [[nodiscard]] static Document createDocument();

  /// Parses a document of XML 1.0 (fifth edition). It refers to the bytes of `text`, which must not
  /// change until the document is destroyed or cleared. Time and memory are linear in the size,
  /// whatever the bytes; nothing is fetched. `report` may be null.
  ///
  /// The encoding is UTF-16 after its byte order mark, else the declared one of ISO-8859-1 (or
  /// latin1), US-ASCII and UTF-8 (case ignored), else UTF-8. A UTF-8 mark is skipped. In texts,
  /// attribute values and names a character above U+00FF becomes `?`.
  ///
  /// The tree has the elements with their attributes, the texts and the CDATA sections. White space
  /// between tags is a text in an element without child elements; in others it is layout and left
  /// out. Comments, instructions, the declaration and the document type are skipped. A reference to
  /// an entity that is not predefined stays as it is written if the document type has an external
  /// identifier, which might declare it, and the document is not declared standalone.
  ///
  /// Null when the text is refused: it is not well-formed, has an internal document type subset,
  /// has another encoding or bytes that are ill-formed in its encoding, or is larger than 4 GiB.
  /// When memory runs out, the document is incomplete; throws std::bad_alloc when memory is
  /// insufficient even for an empty one.
  [[nodiscard]] static Document createDocument(std::span<const char> text,
                                               ParseReport* report = nullptr);
  [[nodiscard]] static Document createDocument(std::span<const std::byte> text,
                                               ParseReport* report = nullptr);
};

}  // namespace dom
