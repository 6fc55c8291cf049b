#include "dom/Node.h"

#include "dom/CharacterData.h"
#include "dom/DocumentType.h"
#include "dom/Element.h"
#include "dom/NodeList.h"
#include "dom/ProcessingInstruction.h"
#include "dom/Tree.h"

namespace dom {
namespace {

/// Whether a node of one type can be a child of another.
bool CanHold(NodeType parent, NodeType child) {
  switch (child) {
    case NodeType::kNone:
    case NodeType::kDocument:
      return false;
    case NodeType::kElement:
    case NodeType::kComment:
    case NodeType::kProcessingInstruction:
      break;
    case NodeType::kText:
    case NodeType::kCDATASection:
      return parent == NodeType::kElement;
    case NodeType::kDocumentType:
      return parent == NodeType::kDocument;
  }
  return parent == NodeType::kElement || parent == NodeType::kDocument;
}

/// Whether `node` is `inner` or an ancestor of it.
bool IsAbove(const TreeNode& node, const TreeNode* inner) {
  while (inner != nullptr && inner != &node) inner = inner->parent;
  return inner != nullptr;
}

/// Whether `child` can be moved under `parent`. A node without children, such as a new one, needs
/// no search for a cycle.
bool CanMove(TreeNode& child, const TreeNode& parent) {
  if (!CanHold(parent.type, child.type)) return false;
  const TreeElement* const element = AsTreeElement(&child);
  if (element == nullptr || element->first_child == nullptr) return &child != &parent;
  return !IsAbove(child, &parent);
}

/// The data of an instruction or the system identifier of a document type.
std::string_view DataOf(TreeNode* node) {
  const TreeElement* const element = AsTreeElement(node);
  return element == nullptr || element->first_attribute == nullptr
             ? std::string_view()
             : element->first_attribute->value.View();
}

/// Returns the node if it has that type; else a null handle.
Node OfType(Node node, NodeType type) { return node.getNodeType() == type ? node : Node(); }

}  // namespace

NodeType Node::getNodeType() const { return node_ == nullptr ? NodeType::kNone : node_->type; }

std::string_view Node::getNodeName() const {
  switch (getNodeType()) {
    case NodeType::kElement:
    case NodeType::kProcessingInstruction:
    case NodeType::kDocumentType:
      return node_->Text();
    case NodeType::kText:
      return "#text";
    case NodeType::kCDATASection:
      return "#cdata-section";
    case NodeType::kComment:
      return "#comment";
    case NodeType::kDocument:
      return "#document";
    case NodeType::kNone:
      break;
  }
  return {};
}

std::string_view Node::getNodeValue() const {
  switch (getNodeType()) {
    case NodeType::kText:
    case NodeType::kCDATASection:
    case NodeType::kComment:
      return node_->Text();
    case NodeType::kProcessingInstruction:
      return DataOf(node_);
    case NodeType::kElement:
    case NodeType::kDocumentType:
    case NodeType::kDocument:
    case NodeType::kNone:
      break;
  }
  return {};
}

bool Node::WasRead() const { return node_ != nullptr && node_->HasMark(TreeNode::kWasRead); }

Node Node::getParentNode() const { return {node_ == nullptr ? nullptr : node_->parent, tree_}; }

Node Node::getFirstChild() const {
  const TreeElement* const element = AsTreeElement(node_);
  return {element == nullptr ? nullptr : element->first_child, tree_};
}

Node Node::getLastChild() const {
  const TreeElement* const element = AsTreeElement(node_);
  return {element == nullptr ? nullptr : element->LastChild(), tree_};
}

Node Node::getNextSibling() const { return {node_ == nullptr ? nullptr : node_->next, tree_}; }

Node Node::getPreviousSibling() const {
  const bool is_first =
      node_ == nullptr || node_->parent == nullptr || node_->parent->first_child == node_;
  return {is_first ? nullptr : node_->previous, tree_};
}

NodeList Node::getChildNodes() const { return NodeList(getFirstChild()); }

bool Node::hasChildNodes() const { return static_cast<bool>(getFirstChild()); }

Node Node::appendChild(Node child) const { return insertBefore(child, {}); }

Node Node::insertBefore(Node child, Node reference) const {
  TreeElement* const parent = AsTreeElement(node_);
  if (parent == nullptr || child.tree_ != tree_ || child.node_ == nullptr) return {};
  if (reference && reference.node_->parent != parent) return {};
  if (!CanMove(*child.node_, *parent)) return {};
  if (child == reference) return child;
  Tree::Detach(*child.node_);
  if (reference)
    Tree::InsertBefore(*reference.node_, *child.node_);
  else
    Tree::Append(*parent, *child.node_);
  return child;
}

Node Node::removeChild(Node child) const {
  if (!child || child.node_->parent == nullptr || child.node_->parent != node_) return {};
  Tree::Detach(*child.node_);
  return child;
}

Text::Text(Node node) : CharacterData(OfType(node, NodeType::kText)) {}
CDATASection::CDATASection(Node node) : CharacterData(OfType(node, NodeType::kCDATASection)) {}
Comment::Comment(Node node) : CharacterData(OfType(node, NodeType::kComment)) {}
ProcessingInstruction::ProcessingInstruction(Node node)
    : Node(OfType(node, NodeType::kProcessingInstruction)) {}
DocumentType::DocumentType(Node node) : Node(OfType(node, NodeType::kDocumentType)) {}

std::string_view DocumentType::getSystemId() const { return DataOf(node_); }

Element::Element(Node node) : Node(OfType(node, NodeType::kElement)) {}

}  // namespace dom
