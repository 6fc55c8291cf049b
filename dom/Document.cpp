#include "dom/Document.h"

#include <cassert>
#include <utility>

#include "dom/PagePool.h"
#include "dom/Tree.h"

namespace dom {

namespace {

/// A detached node of that type; null in a null document and when memory runs out.
pugi::xml_node MakeNode(const Document& document, pugi::xml_node_type type) {
  if (!document) return {};
  return GetHiddenPlace(Wrap(document.getNode().GetInternal())).append_child(type);
}

Node MakeText(const Document& document, pugi::xml_node_type type, std::string_view text) {
  pugi::xml_node node = MakeNode(document, type);
  node.set_value(text.data(), text.size());
  return Node(Unwrap(node));
}

Node MakeNamed(const Document& document, pugi::xml_node_type type, const TerminatedName& name) {
  pugi::xml_node node = MakeNode(document, type);
  node.set_name(name);
  return Node(Unwrap(node));
}

}  // namespace

Document::Document() noexcept = default;
Document::Document(std::unique_ptr<Tree> tree) noexcept : tree_(std::move(tree)) {}
Document::Document(Document&& other) noexcept = default;
Document& Document::operator=(Document&& other) noexcept = default;
Document::~Document() = default;

void Document::Clear() {
  if (!tree_) return;
  tree_->document.reset();
  tree_->failure_count_before = PagePool::GetFailureCount();
}

bool Document::IsComplete() const {
  return !tree_ || tree_->failure_count_before == PagePool::GetFailureCount();
}

Node Document::getNode() const { return tree_ ? Node(Unwrap(tree_->document)) : Node(); }

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
  return Element(MakeNamed(*this, pugi::node_element, TerminatedName(tag_name)));
}

Text Document::createTextNode(std::string_view text) const {
  return Text(MakeText(*this, pugi::node_pcdata, text));
}

CDATASection Document::createCDATASection(std::string_view text) const {
  return CDATASection(MakeText(*this, pugi::node_cdata, text));
}

Comment Document::createComment(std::string_view text) const {
  const pugi::xml_node node = MakeNode(*this, pugi::node_comment);
  SetLegalValue(node, text, TextRule::kComment);
  return Comment(Node(Unwrap(node)));
}

ProcessingInstruction Document::createProcessingInstruction(std::string_view target,
                                                            std::string_view data) const {
  const Node node = MakeNamed(*this, pugi::node_pi, TerminatedName(target));
  SetLegalValue(Wrap(node.GetInternal()), data, TextRule::kInstruction);
  return ProcessingInstruction(node);
}

DocumentType Document::createDocumentType(std::string_view name, std::string_view system_id) const {
  const Node node = MakeNamed(*this, pugi::node_pi, TerminatedName("!", name));
  SetLegalValue(Wrap(node.GetInternal()), system_id, TextRule::kIdentifier);
  return DocumentType(node);
}

}  // namespace dom
