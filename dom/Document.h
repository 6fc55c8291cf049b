#pragma once

#include <memory>
#include <string_view>

#include "dom/CharacterData.h"
#include "dom/DocumentType.h"
#include "dom/Element.h"
#include "dom/Node.h"
#include "dom/NodeList.h"
#include "dom/ProcessingInstruction.h"

namespace dom {

class OutputBuffer;
class Tree;

/// Owns a tree of nodes; created by DOMImplementation. A parsed document refers to the buffer that
/// it was parsed from. A null document (nothing parsed, or moved from) has no nodes and makes none.
///
/// A node that was created, or removed from the document, is detached: it belongs to the document
/// and can be filled, but is not part of its tree and is not written until it is appended to a node
/// of the tree. The append functions of Element do both in one step, faster.
class Document {
 public:
  Document() noexcept;
  Document(Document&& other) noexcept;
  Document& operator=(Document&& other) noexcept;
  ~Document();

  explicit operator bool() const { return tree_ != nullptr; }

  /// Removes all nodes, including detached ones; their memory is reused. A null document stays
  /// null.
  void Clear();
  /// False when memory has run out since the document was made or cleared: a node, an attribute or
  /// a text is missing.
  [[nodiscard]] bool IsComplete() const;

  /// The document as a node; null for a null document.
  [[nodiscard]] Node getNode() const;
  /// The root element; null in an empty document.
  [[nodiscard]] Element getDocumentElement() const;
  [[nodiscard]] DocumentType getDoctype() const;

  /// Create detached nodes.
  [[nodiscard]] Element createElement(std::string_view tag_name) const;
  [[nodiscard]] Text createTextNode(std::string_view text) const;
  [[nodiscard]] CDATASection createCDATASection(std::string_view text) const;
  /// Drops the characters that setAttribute drops. The second of two '-', and one at the end,
  /// becomes a blank, since XML does not allow them in a comment.
  [[nodiscard]] Comment createComment(std::string_view text) const;
  /// Drops the same characters; a '?' before a '>' becomes a blank.
  [[nodiscard]] ProcessingInstruction createProcessingInstruction(std::string_view target,
                                                                  std::string_view data) const;
  /// Drops the same characters from `system_id`; a '"' becomes a blank.
  [[nodiscard]] DocumentType createDocumentType(std::string_view name,
                                                std::string_view system_id) const;

  /// Shorthands for the functions of getNode().
  [[nodiscard]] Node getFirstChild() const { return getNode().getFirstChild(); }
  [[nodiscard]] Node getLastChild() const { return getNode().getLastChild(); }
  [[nodiscard]] NodeList getChildNodes() const { return getNode().getChildNodes(); }
  // NOLINTBEGIN(modernize-use-nodiscard)
  Node appendChild(Node child) const { return getNode().appendChild(child); }
  Node insertBefore(Node child, Node reference) const {
    return getNode().insertBefore(child, reference);
  }
  Node removeChild(Node child) const { return getNode().removeChild(child); }
  // NOLINTEND(modernize-use-nodiscard)

 private:
  friend class DOMImplementation;
  friend bool Serialize(const Document& document, OutputBuffer& output);

  explicit Document(std::unique_ptr<Tree> tree) noexcept;

  std::unique_ptr<Tree> tree_;
};

}  // namespace dom
