#include "dom/TreeMaker.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <pugixml.hpp>
#include <string_view>

#include "dom/Blocks.h"
#include "dom/References.h"
#include "dom/Tree.h"

namespace dom {
namespace {

/// Makes our nodes one by one, each behind the one before or under it.
class TreeMaker {
 public:
  TreeMaker(std::string_view buffer, Tree& tree)
      : buffer_(reinterpret_cast<std::uintptr_t>(buffer.data())),
        block_count_(buffer.size() < kBlock ? 0 : buffer.size() - kBlock + 1),
        tree_(tree),
        parent_(tree.Root()) {}

  /// Appends a node of that type, without its children, to the current parent; an element is the
  /// parent from then on. False when memory runs out.
  bool Append(const pugi::xml_node& node, pugi::xml_node_type type) {
    switch (type) {
      case pugi::node_pcdata:
        return AppendNode(NodeType::kText, Expanded(node.value()));
      case pugi::node_cdata:
        return AppendNode(NodeType::kCDATASection, InPlace(node.value()));
      default:
        return AppendElement(node);
    }
  }
  /// The last element has all its children.
  void EndElement() { parent_ = parent_->parent; }

 private:
  bool AppendElement(const pugi::xml_node& node) {
    TreeElement* const element = tree_.AdoptElement(NodeType::kElement, InPlace(node.name()));
    if (element == nullptr) return false;
    Tree::Append(*parent_, *element);
    parent_ = element;
    // Behind the last attribute there is one without a name.
    pugi::xml_attribute attribute = node.first_attribute();
    for (const char* name; *(name = attribute.name()) != '\0';
         attribute = attribute.next_attribute())
      tree_.AppendAttribute(*element, InPlace(name), Expanded(attribute.value()));
    const char* const text = node.value();
    return *text == '\0' || AppendNode(NodeType::kText, Expanded(text));
  }

  bool AppendNode(NodeType type, TreeText text) {
    TreeNode* const node = tree_.AdoptNode(type, text);
    if (node != nullptr) Tree::Append(*parent_, *node);
    return node != nullptr;
  }

  // Texts that end with a NUL. Nearly all names and most others are shorter than a block.

  [[nodiscard]] TreeText InPlace(const char* text) const {
#if ZAF2XML_SSE2
    if (HasBlock(text)) {
      const unsigned nuls = FindInBlock(LoadBlock(text, kBlock), '\0');
      if (nuls != 0) return {text, static_cast<std::uint32_t>(std::countr_zero(nuls))};
    }
#endif
    return {text, static_cast<std::uint32_t>(std::strlen(text))};
  }

  [[nodiscard]] TreeText Expanded(const char* text) const {
#if ZAF2XML_SSE2
    if (HasBlock(text)) {
      const __m128i block = LoadBlock(text, kBlock);
      const unsigned nuls = FindInBlock(block, '\0');
      const unsigned up_to_nul = nuls ^ (nuls - 1);
      if (nuls != 0 && (FindInBlock(block, '&') & up_to_nul) == 0)
        return {text, static_cast<std::uint32_t>(std::countr_zero(nuls))};
    }
#endif
    const auto size = static_cast<std::uint32_t>(std::strlen(text));
    // What pugixml parsed in place is the caller's buffer, which is not constant.
    return {text, ExpandReferences(const_cast<char*>(text), size)};
  }

  /// Whether a block of the buffer begins with the text. Texts are in the buffer unless they are
  /// empty.
  [[nodiscard]] bool HasBlock(const char* text) const {
    return reinterpret_cast<std::uintptr_t>(text) - buffer_ < block_count_;
  }

  std::uintptr_t buffer_;
  std::size_t block_count_;  ///< Places of the buffer where a block begins.
  Tree& tree_;
  TreeElement* parent_;
};

/// Gives a node without children back; returns its parent.
pugi::xml_node Remove(const pugi::xml_node& node) {
  pugi::xml_node parent = node.parent();
  parent.remove_child(node);
  return parent;
}

}  // namespace

void MakeTree(pugi::xml_node root, std::string_view buffer, ParsedNodes parsed, Tree& tree) {
  TreeMaker maker(buffer, tree);
  std::size_t depth = 0;
  pugi::xml_node node = root;
  // A list ends with a null handle, whose type is node_null: one call tells both.
  pugi::xml_node_type type = pugi::node_element;
  while (maker.Append(node, type)) {
    if (type == pugi::node_element) {
      const pugi::xml_node child = node.first_child();
      type = child.type();
      if (type != pugi::node_null) {
        node = child;
        ++depth;
        continue;
      }
      maker.EndElement();
    }
    // To the next sibling of the node or of one that it is the last in. What is left has no
    // children any more if nodes are given back: none is destroyed with others under it.
    while (true) {
      if (depth == 0) return;
      const pugi::xml_node next = node.next_sibling();
      type = next.type();
      if (type != pugi::node_null) {
        if (parsed == ParsedNodes::kGivenBack) Remove(node);
        node = next;
        break;
      }
      node = parsed == ParsedNodes::kGivenBack ? Remove(node) : node.parent();
      --depth;
      maker.EndElement();
    }
  }
}

}  // namespace dom
