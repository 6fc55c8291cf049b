#include "dom/Tree.h"

#include <algorithm>

namespace dom {
namespace {

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

/// Whether `c` between `before` and `after` (NUL: the end) must become a blank.
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

/// Copies the text to `place`, the end of an allocation, and returns whether it has a character of
/// the set.
template <Search search>
bool CopyAndFind(std::string_view text, char* place) {
  unsigned found = 0;
  for (; text.size() > kBlock; text.remove_prefix(kBlock), place += kBlock)
    found |= CopyBlock<search>(text.data(), kBlock, place);
  return (found | CopyBlock<search>(text.data(), text.size(), place)) != 0;
}

}  // namespace

void Tree::InsertBefore(TreeNode& reference, TreeNode& child) {
  TreeElement& parent = *reference.parent;
  Adopt(parent, child);
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
  const TreeText copy = Copy(text);
  // The copy belongs to this tree.
  char* const characters = const_cast<char*>(copy.data);
  return {characters, characters == nullptr ? 0 : MakeLegal(characters, copy.size, rule)};
}

TreeText Tree::CopyValue(std::string_view value, char* characters) {
  const auto size = static_cast<std::uint32_t>(value.size());
  if (!CopyAndFind<Search::kValueSpecials>(value, characters)) return {characters, size, true};
  const bool has_controls = CopyAndFind<Search::kControls>(value, characters);
  return {characters, has_controls ? MakeLegal(characters, size, TextRule::kAttribute) : size};
}

std::uint32_t Tree::MakeLegal(char* text, std::uint32_t size, TextRule rule) {
  char* const end = std::remove_if(text, text + size, IsControl);
  char before = '\0';
  for (char* p = text; p != end; ++p) {
    if (IsBarred(before, *p, p + 1 == end ? '\0' : p[1], rule)) *p = ' ';
    before = *p;
  }
  return static_cast<std::uint32_t>(end - text);
}

}  // namespace dom
