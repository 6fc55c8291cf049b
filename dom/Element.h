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

/// Who keeps the characters of a text.
enum class TextOwner : std::uint8_t {
  kDocument,  ///< They are copied.
  kCaller,    ///< They stay where they are, and live as long as the document.
};

/// A handle to an element.
///
/// Names are given by the program and are valid XML names; they are not checked. The texts of
/// appendText and appendCDATASection hold no character below 0x20 but tab, LF and CR, and those of
/// a CDATA section no `]]>`: the caller, who looks at every character anyway, sees to that.
class Element : public Node {
 public:
  Element() = default;
  /// Null when the node is no element.
  explicit Element(Node node);

  [[nodiscard]] std::string_view getTagName() const { return getNodeName(); }

  /// The value of the first attribute of that name; empty when there is none. A call looks at
  /// each attribute once.
  [[nodiscard]] std::string_view getAttribute(std::string_view name) const;
  [[nodiscard]] bool hasAttribute(std::string_view name) const;
  [[nodiscard]] Attr getAttributeNode(std::string_view name) const;
  [[nodiscard]] NamedNodeMap getAttributes() const;
  /// Sets what Node::WasRead says: of an element that was found by other means than its name, or
  /// was found but is of no use.
  void SetRead(bool was_read) const;

  /// Sets an attribute; a new one comes last. Characters below 0x20 other than tab, LF and CR are
  /// dropped from the value: no document could hold them.
  void setAttribute(std::string_view name, std::string_view value) const;
  /// The same for an attribute that the element does not have yet; does not look for it.
  void appendAttribute(std::string_view name, std::string_view value) const;

  /// The first child element of that name; an empty name: of any name.
  [[nodiscard]] Element getFirstChildElement(std::string_view name = {}) const;
  /// The next sibling element of that name; an empty name: of any name.
  [[nodiscard]] Element getNextSiblingElement(std::string_view name = {}) const;

  /// The texts and CDATA sections among the element's own children, joined. One piece is returned
  /// in place; several are joined in `scratch`, which is not touched otherwise.
  [[nodiscard]] std::string_view getTextContent(std::string& scratch) const;
  /// The same where there is no `scratch`: each call that joins pieces adds a text to the memory
  /// of the document, where it stays until that is cleared; it is empty when that runs out.
  [[nodiscard]] std::string_view getTextContent() const;

  /// Makes a node and appends it, without the way through a detached node.
  // NOLINTNEXTLINE(modernize-use-nodiscard)
  Element appendElement(std::string_view name) const;
  /// The same with a text, which is not empty and in which nothing has to be escaped. Most are
  /// like that, and those who know it spare the serialiser from looking.
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

  /// What the handle refers to; null for a null handle.
  [[nodiscard]] TreeElement* Get() const;
  /// Appends a node with that text, which is not an element's.
  void AppendCharacters(NodeType type, std::string_view text, TextOwner owner) const;
  /// Appends a detached node; null does nothing.
  void AppendNode(TreeNode* node) const;
};

/// Finds child elements of one element by their names. Those that are asked for in the order in
/// which they stand cost one comparison each. Each name is to be asked for once only.
class ChildFinder {
 public:
  /// For a null handle there is nothing to find.
  explicit ChildFinder(Element parent);

  /// What getFirstChildElement gives for a name that is not empty.
  [[nodiscard]] Element Find(std::string_view name);
  /// The text content of that child, joined as by getTextContent; empty when it is not there.
  [[nodiscard]] std::string_view FindText(std::string_view name, std::string& scratch);

 private:
  TreeElement* FindNode(std::string_view name);

  /// Where to begin: what stands before it was found, so it has names that were asked for.
  TreeNode* next_;
  Tree* tree_;
};

}  // namespace dom
