#include "dom/Node.h"

#include <pugixml.hpp>

#include "dom/CharacterData.h"
#include "dom/DocumentType.h"
#include "dom/Element.h"
#include "dom/NodeList.h"
#include "dom/ProcessingInstruction.h"
#include "dom/Tree.h"

namespace dom {
namespace {

Node ToNode(pugi::xml_node node) { return Node(Unwrap(node)); }

/// Whether a node of that type can be the child of another.
bool CanHold(const Node& parent, NodeType child) {
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
      return parent.getNodeType() == NodeType::kElement;
    case NodeType::kDocumentType:
      return parent.getNodeType() == NodeType::kDocument;
  }
  return parent.getNodeType() == NodeType::kElement || parent.getNodeType() == NodeType::kDocument;
}

/// The node, if it is of that type.
pugi::xml_node_struct* OfType(Node node, NodeType type) {
  return node.getNodeType() == type ? node.GetInternal() : nullptr;
}

}  // namespace

NodeType Node::getNodeType() const {
  const pugi::xml_node node = Wrap(node_);
  switch (node.type()) {
    case pugi::node_element:
      return NodeType::kElement;
    case pugi::node_pcdata:
      return NodeType::kText;
    case pugi::node_cdata:
      return NodeType::kCDATASection;
    case pugi::node_comment:
      return NodeType::kComment;
    case pugi::node_pi:
      return *node.name() == '!' ? NodeType::kDocumentType : NodeType::kProcessingInstruction;
    case pugi::node_document:
      return NodeType::kDocument;
    case pugi::node_null:
    case pugi::node_declaration:
    case pugi::node_doctype:
      break;
  }
  return NodeType::kNone;
}

std::string_view Node::getNodeName() const {
  switch (getNodeType()) {
    case NodeType::kElement:
    case NodeType::kProcessingInstruction:
      return Wrap(node_).name();
    case NodeType::kDocumentType:
      return Wrap(node_).name() + 1;
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
  return getNodeType() == NodeType::kDocumentType ? "" : Wrap(node_).value();
}

Node Node::getParentNode() const {
  const pugi::xml_node parent = Wrap(node_).parent();
  return IsHidden(parent) ? Node() : ToNode(parent);
}

Node Node::getFirstChild() const {
  const pugi::xml_node child = Wrap(node_).first_child();
  return ToNode(IsHidden(child) ? child.next_sibling() : child);
}

Node Node::getLastChild() const {
  const pugi::xml_node child = Wrap(node_).last_child();
  return IsHidden(child) ? Node() : ToNode(child);
}

Node Node::getNextSibling() const { return ToNode(Wrap(node_).next_sibling()); }

Node Node::getPreviousSibling() const {
  const pugi::xml_node sibling = Wrap(node_).previous_sibling();
  return IsHidden(sibling) ? Node() : ToNode(sibling);
}

NodeList Node::getChildNodes() const { return NodeList(getFirstChild()); }

bool Node::hasChildNodes() const { return static_cast<bool>(getFirstChild()); }

Node Node::appendChild(Node child) const {
  if (!CanHold(*this, child.getNodeType())) return {};
  return ToNode(Wrap(node_).append_move(Wrap(child.node_)));
}

Node Node::insertBefore(Node child, Node reference) const {
  if (!reference) return appendChild(child);
  if (!CanHold(*this, child.getNodeType())) return {};
  return ToNode(Wrap(node_).insert_move_before(Wrap(child.node_), Wrap(reference.node_)));
}

Node Node::removeChild(Node child) const {
  const pugi::xml_node node = Wrap(child.node_);
  if (!node || node.parent() != Wrap(node_)) return {};
  return ToNode(GetHiddenPlace(node).append_move(node));
}

Text::Text(Node node) : CharacterData(OfType(node, NodeType::kText)) {}
CDATASection::CDATASection(Node node) : CharacterData(OfType(node, NodeType::kCDATASection)) {}
Comment::Comment(Node node) : CharacterData(OfType(node, NodeType::kComment)) {}
ProcessingInstruction::ProcessingInstruction(Node node)
    : Node(OfType(node, NodeType::kProcessingInstruction)) {}
DocumentType::DocumentType(Node node) : Node(OfType(node, NodeType::kDocumentType)) {}

std::string_view DocumentType::getSystemId() const { return Wrap(node_).value(); }

Element::Element(Node node) : Node(OfType(node, NodeType::kElement)) {}

}  // namespace dom
