#include "dom/Tree.h"

#include <algorithm>

namespace dom {
namespace {

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

/// Whether any character is below 0x20; tab, LF and CR are.
bool HasControls(std::string_view text) {
  char copy[kBlock];
  while (text.size() > kBlock) {
    if (CopyBlock<Search::kControls>(text.data(), kBlock, copy) != 0) return true;
    text.remove_prefix(kBlock);
  }
  return CopyBlock<Search::kControls>(text.data(), text.size(), copy) != 0;
}

/// Whether `c` between `before` and `after` (NUL: the end) has to become a blank.
bool IsBarred(char before, char c, char after, TextRule rule) {
  switch (rule) {
    case TextRule::kComment:
      return c == '-' && (before == '-' || after == '\0');
    case TextRule::kInstruction:
      return c == '?' && after == '>';
    case TextRule::kIdentifier:
      return c == '"';
    case TextRule::kAttribute:
      break;
  }
  return false;
}

}  // namespace

void Tree::InsertBefore(TreeNode& reference, TreeNode& child) {
  TreeElement& parent = *reference.parent;
  child.parent = &parent;
  child.next = &reference;
  child.previous = reference.previous;
  (parent.first_child == &reference ? parent.first_child : reference.previous->next) = &child;
  reference.previous = &child;
}

void Tree::Detach(TreeNode& node) {
  TreeElement* const parent = node.parent;
  if (parent == nullptr) return;
  TreeNode* const next = node.next;
  (next == nullptr ? parent->first_child : next)->previous = node.previous;
  (parent->first_child == &node ? parent->first_child : node.previous->next) = next;
  node.parent = nullptr;
  node.next = nullptr;
  node.previous = nullptr;
}

TreeText Tree::CopyLegal(std::string_view text, TextRule rule) {
  TreeText copy = Copy(text);
  if (copy.data == nullptr || (rule == TextRule::kAttribute && !HasControls(text))) return copy;
  char* const begin = const_cast<char*>(copy.data);  // Memory of the arena, which is not constant.
  char* const end = std::remove_if(begin, begin + text.size(), IsControl);
  char before = '\0';
  for (char* p = begin; p != end; ++p) {
    if (IsBarred(before, *p, p + 1 == end ? '\0' : p[1], rule)) *p = ' ';
    before = *p;
  }
  copy.size = static_cast<std::uint32_t>(end - begin);
  return copy;
}

}  // namespace dom
