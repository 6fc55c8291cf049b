#pragma once

#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <string_view>

#include "dom/Arena.h"
#include "dom/Blocks.h"
#include "dom/NodeType.h"

/// The nodes to which the handles refer. Only for the classes of this folder.
///
/// The size of a node determines how fast documents are built, written and parsed: each fits a
/// cache line.
namespace dom {

struct TreeElement;

/// A text in an Arena or in the buffer from which a document was parsed.
struct TreeText {
  const char* data;
  std::uint32_t size;
  /// Whether no character has to be escaped and the text is in an Arena, so that a whole block can
  /// be read from its start. False if unknown.
  bool is_plain = false;

  [[nodiscard]] std::string_view View() const { return {data, size}; }
};

struct TreeAttribute {
  TreeText name;
  TreeText value;
  TreeAttribute* next;

  // Whether the attribute was read is stored in a flag that names do not use.

  [[nodiscard]] bool WasRead() const { return name.is_plain; }
  void SetRead() { name.is_plain = true; }
};

/// A node without children: a text, CDATA section or comment.
struct TreeNode {
  const char* text;         ///< Of an element, instruction or document type: its name.
  std::uint32_t text_size;  ///< In bytes.
  NodeType type;
  bool is_plain;  ///< As in TreeText.
  /// Of an element: whether it may have children other than elements and comments.
  bool may_hold_text;
  std::uint8_t marks;  ///< The bits that follow.
  TreeElement* parent;
  TreeNode* next;
  TreeNode* previous;  ///< Of a first child: the last one.

  static constexpr std::uint8_t kHoldsElements = 1;  ///< The parser found an element in it.
  static constexpr std::uint8_t kWasRead = 2;        ///< Set when an element or text was read.

  [[nodiscard]] bool HasMark(std::uint8_t mark) const { return (marks & mark) != 0; }
  void SetMark(std::uint8_t mark) { marks = static_cast<std::uint8_t>(marks | mark); }
  [[nodiscard]] std::string_view Text() const { return {text, text_size}; }
};

/// An element, or the document itself. An instruction and a document type have their data or system
/// identifier as the value of a single attribute.
struct TreeElement : TreeNode {
  TreeNode* first_child;
  TreeAttribute* first_attribute;
  TreeAttribute* last_attribute;

  [[nodiscard]] TreeNode* LastChild() const {
    return first_child == nullptr ? nullptr : first_child->previous;
  }
};

/// Whether nodes of this type are a TreeElement.
inline bool IsTreeElement(NodeType type) {
  return type == NodeType::kElement || type == NodeType::kDocument ||
         type == NodeType::kProcessingInstruction || type == NodeType::kDocumentType;
}

/// Returns the node as one that may have children and attributes; null for any other.
inline TreeElement* AsTreeElement(TreeNode* node) {
  return node != nullptr && IsTreeElement(node->type) ? static_cast<TreeElement*>(node) : nullptr;
}

/// Whether the node is a text or a CDATA section.
inline bool IsText(const TreeNode& node) {
  return node.type == NodeType::kText || node.type == NodeType::kCDATASection;
}

/// The characters, besides control characters, that a text must not contain.
enum class TextRule : std::uint8_t {
  kAttribute,    ///< None.
  kComment,      ///< `--`, and `-` at the end.
  kInstruction,  ///< `?>`.
  kIdentifier,   ///< `"`.
};

/// A document node and the memory of all nodes, attached or detached.
class Tree {
 public:
  Tree() = default;

  [[nodiscard]] TreeElement* Root() { return &root_; }
  /// Removes all nodes.
  void Clear() {
    arena_.Clear();
    root_ = EmptyElement(NodeType::kDocument, {});
  }
  /// Whether no allocation has failed.
  [[nodiscard]] bool IsComplete() const { return !arena_.HasFailed(); }
  /// Records an allocation failure elsewhere.
  void SetIncomplete() { arena_.SetFailed(); }

  // A text whose data is null could not be copied. The functions below return null for it and leave
  // the tree unchanged, as they do when memory runs out.

  TreeText Copy(std::string_view text) {
    char* const place = static_cast<char*>(AllocateWithText(0, text));
    if (place != nullptr) CopyText(text, place);
    return {place, static_cast<std::uint32_t>(text.size())};
  }
  /// Refers to a name, or to a text for which CanStay is true, without a copy.
  static TreeText InPlace(std::string_view text) {
    return {text.data(), static_cast<std::uint32_t>(text.size())};
  }
  /// Whether the text is neither empty nor too long.
  static bool CanStay(std::string_view text) { return !text.empty() && text.size() <= kMostText; }
  /// Allocates memory for the characters of a text; null when memory runs out.
  char* AllocateText(std::size_t size) { return static_cast<char*>(arena_.Allocate(size)); }
  /// Makes a copy that satisfies the rule.
  TreeText CopyLegal(std::string_view text, TextRule rule);

  // These make detached nodes. The Adopt functions do not copy the text.

  TreeNode* AdoptNode(NodeType type, TreeText text) {
    void* const place = text.data == nullptr ? nullptr : arena_.Allocate(sizeof(TreeNode));
    if (place == nullptr) return nullptr;
    return new (place) TreeNode(EmptyNode(type, text));
  }
  TreeElement* AdoptElement(NodeType type, TreeText name) {
    void* const place = name.data == nullptr ? nullptr : arena_.Allocate(sizeof(TreeElement));
    if (place == nullptr) return nullptr;
    return new (place) TreeElement(EmptyElement(type, name));
  }
  TreeNode* MakeNode(NodeType type, std::string_view text) { return AdoptNode(type, Copy(text)); }

  void AppendAttribute(TreeElement& element, TreeText name, TreeText value) {
    const bool is_copied = name.data != nullptr && value.data != nullptr;
    void* const place = is_copied ? arena_.Allocate(sizeof(TreeAttribute)) : nullptr;
    if (place != nullptr) Link(element, *new (place) TreeAttribute{name, value, nullptr});
  }
  /// The same with a copy of `value` that satisfies TextRule::kAttribute, in one allocation.
  void AppendAttribute(TreeElement& element, TreeText name, std::string_view value) {
    void* const place = AllocateWithText(sizeof(TreeAttribute), value);
    if (place == nullptr) return;
    char* const characters = static_cast<char*>(place) + sizeof(TreeAttribute);
    const bool is_plain =
        value.size() <= kBlock &&
        CopyBlock<Search::kValueSpecials>(value.data(), value.size(), characters) == 0;
    const TreeText copy{characters, static_cast<std::uint32_t>(value.size()), is_plain};
    auto* const attribute = new (place) TreeAttribute{name, copy, nullptr};
    if (!is_plain) attribute->value = CopyValue(value, characters);
    Link(element, *attribute);
  }

  /// Appends an element whose only content is a text without characters to escape, as most elements
  /// are. Uses one allocation.
  TreeElement* AppendTextElement(TreeElement& parent, TreeText name, std::string_view text) {
    void* const place = AllocateWithText(kTextElementSize, text);
    if (place == nullptr) return nullptr;
    char* const characters = static_cast<char*>(place) + kTextElementSize;
    CopyText(text, characters);
    return AppendTextElement(parent, name, place,
                             {characters, static_cast<std::uint32_t>(text.size()), true});
  }
  TreeElement* AppendTextElement(TreeElement& parent, TreeText name, const ShortText& text) {
    void* const place = arena_.Allocate(kTextElementSize + text.size);
    if (place == nullptr) return nullptr;
    char* const characters = static_cast<char*>(place) + kTextElementSize;
    std::memcpy(characters, text.characters.data(), kBlock);
    return AppendTextElement(parent, name, place, {characters, text.size, true});
  }

  /// Makes a detached node the last child.
  static void Append(TreeElement& parent, TreeNode& child) {
    Adopt(parent, child);
    TreeNode* const first = parent.first_child;
    if (first == nullptr) {
      parent.first_child = child.previous = &child;
      return;
    }
    child.previous = first->previous;
    first->previous->next = &child;
    first->previous = &child;
  }
  /// Inserts a detached node before a child.
  static void InsertBefore(TreeNode& reference, TreeNode& child);
  /// Removes a node from its parent, if it has one.
  static void Detach(TreeNode& node);

 private:
  static constexpr std::size_t kMostText = std::numeric_limits<std::uint32_t>::max();

  // Detached nodes without content.

  static constexpr TreeNode EmptyNode(NodeType type, TreeText text) {
    return {text.data, text.size, type, text.is_plain, false, 0, nullptr, nullptr, nullptr};
  }
  static constexpr TreeElement EmptyElement(NodeType type, TreeText name) {
    return {EmptyNode(type, name), nullptr, nullptr, nullptr};
  }

  static constexpr std::size_t kTextElementSize = sizeof(TreeElement) + sizeof(TreeNode);

  /// Creates and appends an element and its text node at `place`, which the text follows.
  static TreeElement* AppendTextElement(TreeElement& parent, TreeText name, void* place,
                                        TreeText text) {
    auto* const element = new (place) TreeElement(EmptyElement(NodeType::kElement, name));
    Append(*element, *new (element + 1) TreeNode(EmptyNode(NodeType::kText, text)));
    Append(parent, *element);
    return element;
  }

  /// Allocates `size` bytes followed by space for a text.
  void* AllocateWithText(std::size_t size, std::string_view text) {
    if (text.size() <= kMostText) return arena_.Allocate(size + text.size());
    arena_.SetFailed();
    return nullptr;
  }

  /// Sets the parent of a node that is about to become a child of the element.
  static void Adopt(TreeElement& parent, TreeNode& child) {
    child.parent = &parent;
    parent.may_hold_text |= child.type != NodeType::kElement && child.type != NodeType::kComment;
  }

  static void Link(TreeElement& element, TreeAttribute& attribute) {
    TreeAttribute* const last = element.last_attribute;
    TreeAttribute** const link = last == nullptr ? &element.first_attribute : &last->next;
    *link = &attribute;
    element.last_attribute = &attribute;
  }

  /// Copies an attribute's value to the end of an allocation and makes it legal.
  static TreeText CopyValue(std::string_view value, char* characters);
  /// Changes a text so that it satisfies the rule; returns its new size.
  static std::uint32_t MakeLegal(char* text, std::uint32_t size, TextRule rule);

  Arena arena_;
  TreeElement root_ = EmptyElement(NodeType::kDocument, {});
};

}  // namespace dom
