#include "dom/Element.h"

#include <cassert>

#include "dom/Blocks.h"
#include "dom/Tree.h"

namespace dom {
namespace {

/// Returns the first of `node` and its next siblings that is a text or CDATA section.
inline TreeNode* FindText(TreeNode* node) {
  while (node != nullptr && !IsText(*node)) node = node->next;
  return node;
}

/// Returns the first of `node` and its next siblings that is an element.
inline TreeElement* FindElement(TreeNode* node) {
  while (node != nullptr && node->type != NodeType::kElement) node = node->next;
  return static_cast<TreeElement*>(node);
}

/// The same with this name; an empty name matches every element.
inline TreeElement* FindElement(TreeNode* node, std::string_view name) {
  TreeElement* element = FindElement(node);
  if (name.empty()) return element;
  while (element != nullptr && !AreEqualNames(element->Text(), name))
    element = FindElement(element->next);
  if (element != nullptr) element->SetMark(TreeNode::kWasRead);
  return element;
}

/// Returns the result of getTextContent; a null element has no text.
inline std::string_view JoinTexts(const TreeElement* element, std::string& scratch) {
  TreeNode* const first = element == nullptr ? nullptr : FindText(element->first_child);
  if (first == nullptr) return {};
  first->SetMark(TreeNode::kWasRead);
  TreeNode* next = FindText(first->next);
  if (next == nullptr) return first->Text();
  scratch = first->Text();
  for (; next != nullptr; next = FindText(next->next)) {
    next->SetMark(TreeNode::kWasRead);
    scratch += next->Text();
  }
  return scratch;
}

/// Returns the first attribute with this name; null if not found.
TreeAttribute* FindAttribute(const TreeElement& element, std::string_view name) {
  TreeAttribute* attribute = element.first_attribute;
  while (attribute != nullptr && !AreEqualNames(attribute->name.View(), name))
    attribute = attribute->next;
  return attribute;
}

[[maybe_unused]] bool IsPlain(std::string_view text) {
  return !text.empty() && text.find_first_of("&<>\"") == std::string_view::npos;
}

}  // namespace

Element::Element(TreeElement* element, Tree* tree) : Node(element, tree) {}

TreeElement* Element::Get() const { return static_cast<TreeElement*>(node_); }

std::string_view Element::getAttribute(std::string_view name) const {
  TreeAttribute* const attribute = node_ == nullptr ? nullptr : FindAttribute(*Get(), name);
  if (attribute == nullptr) return {};
  attribute->SetRead();
  return attribute->value.View();
}

void Element::SetRead(bool was_read) const {
  if (node_ == nullptr) return;
  node_->marks &= static_cast<std::uint8_t>(~TreeNode::kWasRead);
  if (was_read) node_->SetMark(TreeNode::kWasRead);
}

bool Element::hasAttribute(std::string_view name) const {
  return static_cast<bool>(getAttributeNode(name));
}

Attr Element::getAttributeNode(std::string_view name) const {
  return {node_ == nullptr ? nullptr : FindAttribute(*Get(), name), tree_};
}

NamedNodeMap Element::getAttributes() const {
  return NamedNodeMap(Attr(node_ == nullptr ? nullptr : Get()->first_attribute, tree_));
}

void Element::setAttribute(std::string_view name, std::string_view value) const {
  if (const Attr attribute = getAttributeNode(name); attribute)
    attribute.setValue(value);
  else
    appendAttribute(name, value);
}

void Element::appendAttribute(std::string_view name, std::string_view value) const {
  if (node_ != nullptr) tree_->AppendAttribute(*Get(), Tree::InPlace(name), value);
}

Element Element::getFirstChildElement(std::string_view name) const {
  return {node_ == nullptr ? nullptr : FindElement(Get()->first_child, name), tree_};
}

Element Element::getNextSiblingElement(std::string_view name) const {
  return {node_ == nullptr ? nullptr : FindElement(node_->next, name), tree_};
}

std::string_view Element::getTextContent(std::string& scratch) const {
  return JoinTexts(Get(), scratch);
}

std::string_view Element::getTextContent() const {
  std::string scratch;
  const std::string_view text = getTextContent(scratch);
  if (scratch.empty()) return text;
  const TreeText copy = tree_->Copy(text);
  return copy.data == nullptr ? std::string_view() : copy.View();
}

Element Element::appendElement(std::string_view name) const {
  assert(!name.empty());
  if (node_ == nullptr) return {};
  TreeElement* const element = tree_->AdoptElement(NodeType::kElement, Tree::InPlace(name));
  AppendNode(element);
  return {element, tree_};
}

Element Element::appendPlainElement(std::string_view name, std::string_view text) const {
  assert(!name.empty() && IsPlain(text));
  if (node_ == nullptr) return {};
  return {tree_->AppendTextElement(*Get(), Tree::InPlace(name), text), tree_};
}

Element Element::appendPlainElement(std::string_view name, const ShortText& text) const {
  assert(!name.empty() && IsPlain({text.characters.data(), text.size}));
  if (node_ == nullptr) return {};
  return {tree_->AppendTextElement(*Get(), Tree::InPlace(name), text), tree_};
}

void Element::appendText(std::string_view text, TextOwner owner) const {
  if (!text.empty()) AppendCharacters(NodeType::kText, text, owner);
}

void Element::appendCDATASection(std::string_view text, TextOwner owner) const {
  AppendCharacters(NodeType::kCDATASection, text, owner);
}

void Element::appendComment(std::string_view text) const {
  if (node_ != nullptr)
    AppendNode(tree_->AdoptNode(NodeType::kComment, tree_->CopyLegal(text, TextRule::kComment)));
}

void Element::AppendCharacters(NodeType type, std::string_view text, TextOwner owner) const {
  if (node_ == nullptr) return;
  const bool stays = owner == TextOwner::kCaller && Tree::CanStay(text);
  AppendNode(tree_->AdoptNode(type, stays ? Tree::InPlace(text) : tree_->Copy(text)));
}

void Element::AppendNode(TreeNode* node) const {
  if (node != nullptr) Tree::Append(*Get(), *node);
}

ChildFinder::ChildFinder(Element parent)
    : next_(parent ? parent.Get()->first_child : nullptr), tree_(parent.tree_) {}

TreeElement* ChildFinder::FindNode(std::string_view name) {
  TreeElement* const first = FindElement(next_);
  next_ = first;
  if (first == nullptr) return nullptr;
  if (!AreEqualNames(first->Text(), name)) return FindElement(first->next, name);
  next_ = first->next;
  first->SetMark(TreeNode::kWasRead);
  return first;
}

Element ChildFinder::Find(std::string_view name) { return {FindNode(name), tree_}; }

std::string_view ChildFinder::FindText(std::string_view name, std::string& scratch) {
  return JoinTexts(FindNode(name), scratch);
}

}  // namespace dom
