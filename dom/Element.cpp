#include "dom/Element.h"

#include <cassert>

#include "dom/Tree.h"

namespace dom {
namespace {

bool IsText(const pugi::xml_node& node) {
  const pugi::xml_node_type type = node.type();
  return type == pugi::node_pcdata || type == pugi::node_cdata;
}

/// The first of `node` and its next siblings that is a text or CDATA section.
pugi::xml_node FindText(pugi::xml_node node) {
  while (!IsNull(node) && !IsText(node)) node = node.next_sibling();
  return node;
}

/// The first of `node` and its next siblings that is an element.
pugi::xml_node FindElement(pugi::xml_node node) {
  while (!IsNull(node) && node.type() != pugi::node_element) node = node.next_sibling();
  return node;
}

/// The same, where all of them have one name: an instruction has a name, too.
pugi::xml_node FindElement(pugi::xml_node node, const char* name) {
  while (!IsNull(node) && node.type() != pugi::node_element) node = node.next_sibling(name);
  return node;
}

}  // namespace

std::string_view Element::getAttribute(std::string_view name) const {
  return Wrap(node_).attribute(TerminatedName(name)).value();
}

bool Element::hasAttribute(std::string_view name) const {
  return static_cast<bool>(getAttributeNode(name));
}

Attr Element::getAttributeNode(std::string_view name) const {
  return Attr(Unwrap(Wrap(node_).attribute(TerminatedName(name))));
}

NamedNodeMap Element::getAttributes() const {
  return NamedNodeMap(Attr(Unwrap(Wrap(node_).first_attribute())));
}

void Element::setAttribute(std::string_view name, std::string_view value) const {
  pugi::xml_node node = Wrap(node_);
  const TerminatedName terminated_name(name);
  pugi::xml_attribute attribute = node.attribute(terminated_name);
  if (IsNull(attribute)) attribute = node.append_attribute(terminated_name);
  SetLegalValue(attribute, value, TextRule::kAttribute);
}

void Element::appendAttribute(std::string_view name, std::string_view value) const {
  SetLegalValue(Wrap(node_).append_attribute(TerminatedName(name)), value, TextRule::kAttribute);
}

Element Element::getFirstChildElement(std::string_view name) const {
  const pugi::xml_node node = Wrap(node_);
  if (name.empty()) return Element(Unwrap(FindElement(node.first_child())));
  const TerminatedName terminated_name(name);
  return Element(Unwrap(FindElement(node.child(terminated_name), terminated_name)));
}

Element Element::getNextSiblingElement(std::string_view name) const {
  const pugi::xml_node node = Wrap(node_);
  if (name.empty()) return Element(Unwrap(FindElement(node.next_sibling())));
  const TerminatedName terminated_name(name);
  return Element(Unwrap(FindElement(node.next_sibling(terminated_name), terminated_name)));
}

std::string_view Element::getTextContent(std::string& scratch) const {
  const pugi::xml_node first = FindText(Wrap(node_).first_child());
  pugi::xml_node next = FindText(first.next_sibling());
  if (IsNull(next)) return first.value();
  scratch = first.value();
  for (; !IsNull(next); next = FindText(next.next_sibling())) scratch += next.value();
  return scratch;
}

std::string_view Element::getTextContent() const {
  std::string scratch;
  const std::string_view text = getTextContent(scratch);
  if (scratch.empty()) return text;
  pugi::xml_node kept = GetHiddenPlace(Wrap(node_)).append_child(pugi::node_pcdata);
  return kept.set_value(text.data(), text.size()) ? kept.value() : "";
}

Element Element::appendElement(std::string_view name) const {
  assert(!name.empty());
  return Element(Unwrap(Wrap(node_).append_child(TerminatedName(name))));
}

void Element::appendText(std::string_view text) const {
  if (text.empty()) return;
  Wrap(node_).append_child(pugi::node_pcdata).set_value(text.data(), text.size());
}

void Element::appendCDATASection(std::string_view text) const {
  Wrap(node_).append_child(pugi::node_cdata).set_value(text.data(), text.size());
}

void Element::appendComment(std::string_view text) const {
  SetLegalValue(Wrap(node_).append_child(pugi::node_comment), text, TextRule::kComment);
}

}  // namespace dom
