#include "dom/Document.h"

#include <cassert>
#include <utility>

#include "dom/Tree.h"

namespace dom {
namespace {

/// Makes a detached instruction or document type.
TreeElement* MakeWithData(Tree& tree, NodeType type, std::string_view name, std::string_view data,
                          TextRule rule) {
  TreeElement* const element = tree.AdoptElement(type, Tree::InPlace(name));
  if (element != nullptr)
    tree.AppendAttribute(*element, Tree::InPlace(""), tree.CopyLegal(data, rule));
  return element;
}

}  // namespace

Document::Document() noexcept = default;
Document::Document(std::unique_ptr<Tree> tree) noexcept : tree_(std::move(tree)) {}
Document::Document(Document&& other) noexcept = default;
Document& Document::operator=(Document&& other) noexcept = default;
Document::~Document() = default;

void Document::Clear() {
  if (tree_) tree_->Clear();
}

bool Document::IsComplete() const { return !tree_ || tree_->IsComplete(); }

Node Document::getNode() const { return tree_ ? Node(tree_->Root(), tree_.get()) : Node(); }

Element Document::getDocumentElement() const {
  for (const Node node : getChildNodes())
    if (const Element element(node); element) return element;
  return {};
}

DocumentType Document::getDoctype() const {
  for (const Node node : getChildNodes())
    if (const DocumentType type(node); type) return type;
  return {};
}

Element Document::createElement(std::string_view tag_name) const {
  assert(!tag_name.empty());
  if (!tree_) return {};
  return {tree_->AdoptElement(NodeType::kElement, Tree::InPlace(tag_name)), tree_.get()};
}

Text Document::createTextNode(std::string_view text) const {
  return tree_ ? Text(Node(tree_->MakeNode(NodeType::kText, text), tree_.get())) : Text();
}

CDATASection Document::createCDATASection(std::string_view text) const {
  if (!tree_) return {};
  return CDATASection(Node(tree_->MakeNode(NodeType::kCDATASection, text), tree_.get()));
}

Comment Document::createComment(std::string_view text) const {
  if (!tree_) return {};
  const TreeText copy = tree_->CopyLegal(text, TextRule::kComment);
  return Comment(Node(tree_->AdoptNode(NodeType::kComment, copy), tree_.get()));
}

ProcessingInstruction Document::createProcessingInstruction(std::string_view target,
                                                            std::string_view data) const {
  if (!tree_) return {};
  TreeNode* const node =
      MakeWithData(*tree_, NodeType::kProcessingInstruction, target, data, TextRule::kInstruction);
  return ProcessingInstruction(Node(node, tree_.get()));
}

DocumentType Document::createDocumentType(std::string_view name, std::string_view system_id) const {
  if (!tree_) return {};
  TreeNode* const node =
      MakeWithData(*tree_, NodeType::kDocumentType, name, system_id, TextRule::kIdentifier);
  return DocumentType(Node(node, tree_.get()));
}

}  // namespace dom
