#pragma once

#include <cstddef>
#include <span>

#include "dom/Document.h"
#include "dom/ParseReport.h"

namespace dom {

/// Makes documents.
class DOMImplementation {
 public:
  /// An empty document. Throws std::bad_alloc when there is no memory even for that.
  [[nodiscard]] static Document createDocument();

  /// Parses a document of XML 1.0 (fifth edition). It refers to the bytes of `text`, which have to
  /// stay unchanged until the document is destroyed or cleared. Takes time and memory linear in the
  /// size, whatever the bytes, and never fetches anything. `report` may be null.
  ///
  /// The encoding is UTF-16 after its byte order mark, else the declared one of ISO-8859-1 (or
  /// latin1), US-ASCII and UTF-8 (case ignored), else UTF-8. A mark of UTF-8 is skipped. In texts,
  /// attribute values and names a character above U+00FF becomes `?`.
  ///
  /// The tree has the elements with their attributes, the texts and the CDATA sections. White space
  /// between tags is a text in an element that holds no elements; in others it is layout and left
  /// out. Comments, instructions, the declaration and the document type are skipped. A reference to
  /// an entity that is not predefined stays as it is written if the document type has an external
  /// identifier, under which it might be declared, and the document is not declared standalone.
  ///
  /// Null when the text is refused: it is not well-formed, has an internal document type subset,
  /// another encoding or bytes that are ill-formed in it, or is larger than 4 GiB. When memory runs
  /// out the document is not complete; throws std::bad_alloc when there is none to begin with.
  [[nodiscard]] static Document createDocument(std::span<const char> text,
                                               ParseReport* report = nullptr);
  [[nodiscard]] static Document createDocument(std::span<const std::byte> text,
                                               ParseReport* report = nullptr);
};

}  // namespace dom
