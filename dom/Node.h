#pragma once

#include <string_view>

#include "dom/NodeType.h"

namespace dom {

class NodeList;
class Tree;
struct TreeNode;

/// A handle to a node of a document's tree: two pointers, copied freely. It owns nothing and is
/// valid until the Document that made the node is destroyed or cleared; moving the Document or the
/// node keeps it valid. As with a pointer, a `const` handle still changes its node.
///
/// A null handle is safe: it has no children, its texts are empty, and operations on it do nothing
/// or return a null handle. When memory runs out, the functions that make nodes return null
/// handles; Document::IsComplete reports afterwards whether that happened.
///
/// Names and texts are 8-bit ISO-8859-1. Texts are copied unless their TextOwner is the caller;
/// names are not: they must outlive the document, as literals do. Neither need be NUL-terminated. A
/// view that is returned refers to the tree and is valid until that text or its node is changed.
class Node {
 public:
  Node() = default;
  /// For the classes of this folder; `node`, which may be null, belongs to `tree`.
  Node(TreeNode* node, Tree* tree) : node_(node), tree_(tree) {}

  explicit operator bool() const { return node_ != nullptr; }
  /// Whether both refer to the same node; equal nodes may differ.
  friend bool operator==(Node left, Node right) { return left.node_ == right.node_; }
  /// A key that identifies the node in dictionaries. Null for a null handle.
  [[nodiscard]] const void* GetIdentity() const { return node_; }
  /// Whether the element was looked up by its name, or the text was returned as part of a text
  /// content. It serves to report the parts of a document that no reader has used.
  [[nodiscard]] bool WasRead() const;

  [[nodiscard]] NodeType getNodeType() const;
  /// The name of an element, the target of an instruction, the name of a document type; for other
  /// nodes the DOM's name ("#text").
  [[nodiscard]] std::string_view getNodeName() const;
  /// The characters of a text, CDATA section or comment, the data of an instruction; else empty.
  [[nodiscard]] std::string_view getNodeValue() const;

  /// The neighbours of a node. A node that is not in the tree has no parent and no siblings.
  [[nodiscard]] Node getParentNode() const;
  [[nodiscard]] Node getFirstChild() const;
  [[nodiscard]] Node getLastChild() const;
  [[nodiscard]] Node getNextSibling() const;
  [[nodiscard]] Node getPreviousSibling() const;
  [[nodiscard]] NodeList getChildNodes() const;
  [[nodiscard]] bool hasChildNodes() const;

  /// Moves `child` to the end of this node's children. Null, with nothing changed, when the child
  /// is from another document or contains this node, or when this node cannot have children.
  Node appendChild(Node child) const;
  /// The same, but before `reference`, a child of this node; at the end when it is null.
  Node insertBefore(Node child, Node reference) const;
  /// Removes a child from the tree and returns it; its memory is kept until the document is
  /// cleared. Null when it is not a child of this node.
  Node removeChild(Node child) const;

 protected:
  TreeNode* node_ = nullptr;
  Tree* tree_ = nullptr;
};

}  // namespace dom
