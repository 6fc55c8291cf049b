#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "dom/Attr.h"
#include "dom/NamedNodeMap.h"
#include "dom/Node.h"

namespace dom {

struct ShortText;
struct TreeElement;

/// The owner of a text's characters.
enum class TextOwner : std::uint8_t {
  kDocument,  ///< The characters are copied.
  kCaller,    ///< They are not copied; the caller keeps them longer than the document.
};

/// A handle to an element.
///
/// Names come from the program and must be valid XML names; they are not checked. The caller also
/// ensures that the texts of appendText and appendCDATASection have no character below 0x20 other
/// than tab, LF and CR, and those of a CDATA section no `]]>`; these are not checked either.
class Element : public Node {
 public:
  Element() = default;
  /// Null when the node is not an element.
  explicit Element(Node node);

  [[nodiscard]] std::string_view getTagName() const { return getNodeName(); }

  /// The value of the first attribute with this name; empty if not found. A call examines
  /// each attribute once.
  [[nodiscard]] std::string_view getAttribute(std::string_view name) const;
  [[nodiscard]] bool hasAttribute(std::string_view name) const;
  [[nodiscard]] Attr getAttributeNode(std::string_view name) const;
  [[nodiscard]] NamedNodeMap getAttributes() const;
  /// Sets the result of Node::WasRead, for an element that was found other than by its name, or
  /// that was found but is not used.
  void SetRead(bool was_read) const;

  /// Sets an attribute; a new one is added at the end. Characters below 0x20 other than tab, LF and
  /// CR are dropped from the value, since XML does not allow them.
  void setAttribute(std::string_view name, std::string_view value) const;
  /// The same for an attribute that the element does not have yet; does not search for it.
  void appendAttribute(std::string_view name, std::string_view value) const;

  /// The first child element with this name; an empty name matches every element.
  [[nodiscard]] Element getFirstChildElement(std::string_view name = {}) const;
  /// The next sibling element with this name; an empty name matches every element.
  [[nodiscard]] Element getNextSiblingElement(std::string_view name = {}) const;

  /// The texts and CDATA sections among the element's own children, joined. A single piece is
  /// returned in place; several are joined in `scratch`, which is otherwise unchanged.
  [[nodiscard]] std::string_view getTextContent(std::string& scratch) const;
  /// The same without `scratch`: each call that joins pieces adds a text to the memory of the
  /// document, which is freed when that is cleared. Empty when memory runs out.
  [[nodiscard]] std::string_view getTextContent() const;

  /// Creates a child and appends it without first detaching it.
  // NOLINTNEXTLINE(modernize-use-nodiscard)
  Element appendElement(std::string_view name) const;
  /// The same with a text, which must not be empty nor contain a character that has to be escaped.
  /// Most texts are like that; the serialiser need not examine them again.
  // NOLINTNEXTLINE(modernize-use-nodiscard)
  Element appendPlainElement(std::string_view name, std::string_view text) const;
  // NOLINTNEXTLINE(modernize-use-nodiscard)
  Element appendPlainElement(std::string_view name, const ShortText& text) const;
  void appendText(std::string_view text, TextOwner owner = TextOwner::kDocument) const;
  void appendCDATASection(std::string_view text, TextOwner owner = TextOwner::kDocument) const;
  /// As Document::createComment.
  void appendComment(std::string_view text) const;

 private:
  friend class ChildFinder;
  friend class Document;
  Element(TreeElement* element, Tree* tree);

  /// The node of the tree; null for a null handle.
  [[nodiscard]] TreeElement* Get() const;
  /// Appends a node of another type than an element with this text.
  void AppendCharacters(NodeType type, std::string_view text, TextOwner owner) const;
  /// Appends a detached node; does nothing for null.
  void AppendNode(TreeNode* node) const;
};

/// Finds child elements of one element by their names. A look-up in document order takes one
/// comparison. Each name may be looked up only once.
class ChildFinder {
 public:
  /// A null handle has no children.
  explicit ChildFinder(Element parent);

  /// The result of getFirstChildElement for a name that is not empty.
  [[nodiscard]] Element Find(std::string_view name);
  /// The text content of that child, joined as by getTextContent; empty without such a child.
  [[nodiscard]] std::string_view FindText(std::string_view name, std::string& scratch);

 private:
  TreeElement* FindNode(std::string_view name);

  /// The start of the search: all children before it have been found.
  TreeNode* next_;
  Tree* tree_;
};

}  // namespace dom
