#pragma once

#include <string_view>

#include "dom/NodeType.h"

namespace dom {

class NodeList;
class Tree;
struct TreeNode;

/// A handle to a node of a document's tree: two pointers, copied freely. It owns nothing and is
/// valid as long as the Document that made the node lives and is not cleared; moving the
/// Document or the node keeps it valid. As with a pointer, a `const` handle still changes its node.
///
/// A null handle is safe: it has no children, its texts are empty, and what is done to it or with
/// it gives a null handle again. When memory runs out, the functions that make nodes give null
/// handles; Document::IsComplete tells afterwards whether that happened.
///
/// Names and texts are 8-bit ISO-8859-1. Texts are copied unless a TextOwner says otherwise; names
/// are not: they have to live as long as the document, as the literals of a program do. Neither
/// need be terminated. A view that is returned refers to the tree and is valid until that text or
/// its node is changed.
class Node {
 public:
  Node() = default;
  /// For the classes of this folder; `node`, which may be null, belongs to `tree`.
  Node(TreeNode* node, Tree* tree) : node_(node), tree_(tree) {}

  explicit operator bool() const { return node_ != nullptr; }
  /// The same node (not: an equal one).
  friend bool operator==(Node left, Node right) { return left.node_ == right.node_; }
  /// What the same node has in common and no other has: a key for dictionaries. Null for null.
  [[nodiscard]] const void* GetIdentity() const { return node_; }
  /// Whether the element was found by its name, or the text belongs to a text content that was
  /// asked for: what a reader of documents has read. For those who look for the rest.
  [[nodiscard]] bool WasRead() const;

  [[nodiscard]] NodeType getNodeType() const;
  /// The name of an element, the target of an instruction, the name of a document type; for the
  /// others what the DOM says ("#text").
  [[nodiscard]] std::string_view getNodeName() const;
  /// The characters of a text, CDATA section or comment, the data of an instruction; else empty.
  [[nodiscard]] std::string_view getNodeValue() const;

  /// The neighbours of a node. A node that is not in the document has no parent and no siblings.
  [[nodiscard]] Node getParentNode() const;
  [[nodiscard]] Node getFirstChild() const;
  [[nodiscard]] Node getLastChild() const;
  [[nodiscard]] Node getNextSibling() const;
  [[nodiscard]] Node getPreviousSibling() const;
  [[nodiscard]] NodeList getChildNodes() const;
  [[nodiscard]] bool hasChildNodes() const;

  /// Makes `child` the last child; it leaves the place where it was. Null, and nothing changes,
  /// when the child is of another document or holds this node, or when this node takes no
  /// children.
  Node appendChild(Node child) const;
  /// The same in front of `reference`, which is a child of this node; at the end when it is null.
  Node insertBefore(Node child, Node reference) const;
  /// Takes a child out of the document and returns it; its memory is kept until the document is
  /// cleared. Null when it is not a child of this node.
  Node removeChild(Node child) const;

 protected:
  TreeNode* node_ = nullptr;
  Tree* tree_ = nullptr;
};

}  // namespace dom
