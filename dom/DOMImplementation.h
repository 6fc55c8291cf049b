#pragma once

#include <cstddef>
#include <span>

#include "dom/Document.h"

namespace dom {

/// Makes documents.
class DOMImplementation {
 public:
  /// An empty document. Throws std::bad_alloc when there is no memory even for that.
  [[nodiscard]] static Document createDocument();

  /// Parses a document, in place: the bytes of `text` are overwritten and hold the document's
  /// texts from then on, so they belong to the caller and have to live as long as the document
  /// does or until it is cleared. Takes time and memory linear in the size, whatever the bytes,
  /// and never fetches anything.
  ///
  /// The encoding: bytes that are declared ISO-8859-1 (or latin1, case ignored) are taken as they
  /// are, even if a mark of UTF-8, which is skipped, stands in front. Others are UTF-16 or UTF-32
  /// when a byte order mark says so, else UTF-8, and are turned into ISO-8859-1 in place. A
  /// character that ISO-8859-1 lacks becomes one `?`, and so does each ill-formed sequence: in
  /// UTF-8 each maximal subpart of one, as the Unicode Standard recommends (chapter 3, "U+FFFD
  /// substitution of maximal subparts"), in UTF-16 each lone surrogate, in UTF-32 each number that
  /// is no character, and in both a cut-off last unit.
  ///
  /// The tree has the elements with their attributes, the texts and the CDATA sections. White space
  /// between tags is a text in an element that holds no elements; in others it is layout, of which
  /// all or some may be left out. (A `<` in an attribute, which is not well-formed, may make others
  /// look like that.) Comments, instructions, the declaration and the document type are skipped.
  /// CR LF and CR become LF; in attribute values tab and line ends become blanks. `&lt;` `&gt;`
  /// `&amp;` `&quot;` `&apos;` and the numeric references `&#65;` and `&#x41;` are expanded, those
  /// above 255 to `?`; anything else that begins with `&` stays as it is written.
  ///
  /// Null when the text is no such document: tags that do not match, unfinished constructs, no
  /// element, a second element, CDATA or text other than white space beside the root. Whether names
  /// and attributes are all well-formed is not checked. When memory runs out the document is not
  /// complete; throws std::bad_alloc when there is none to begin with.
  [[nodiscard]] static Document createDocument(std::span<char> text);
  [[nodiscard]] static Document createDocument(std::span<std::byte> text);
};

}  // namespace dom
