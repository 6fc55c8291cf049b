#pragma once

#include <cstdint>
#include <limits>
#include <new>
#include <string_view>

#include "dom/Arena.h"
#include "dom/NodeType.h"

/// The tree behind the handles. Not for others than the classes of this folder.
///
/// pugixml parses, but the nodes are ours: most documents are built and written, never parsed, and
/// what a node costs decides how fast that is. A node here is a cache line in an arena, and no call
/// into a library stands between a handle and its node.
namespace dom {

struct TreeElement;

/// What is at a place of an Arena, or in the buffer that a document was parsed from.
struct TreeText {
  const char* data;
  std::uint32_t size;

  [[nodiscard]] std::string_view View() const { return {data, size}; }
};

struct TreeAttribute {
  TreeText name;
  TreeText value;
  TreeAttribute* next;
};

/// A node that has no children: a text, CDATA section or comment.
struct TreeNode {
  const char* text;         ///< Of an element, instruction or document type: its name.
  std::uint32_t text_size;  ///< In bytes.
  NodeType type;
  TreeElement* parent;
  TreeNode* next;
  TreeNode* previous;  ///< Of a first child: the last one.

  [[nodiscard]] std::string_view Text() const { return {text, text_size}; }
};

/// An element, or the document itself. An instruction and a document type have their data or
/// system identifier as the value of their only attribute.
struct TreeElement : TreeNode {
  TreeNode* first_child;
  TreeAttribute* first_attribute;
  TreeAttribute* last_attribute;

  [[nodiscard]] TreeNode* LastChild() const {
    return first_child == nullptr ? nullptr : first_child->previous;
  }
};

/// Whether nodes of that type are a TreeElement.
inline bool IsTreeElement(NodeType type) {
  return type == NodeType::kElement || type == NodeType::kDocument ||
         type == NodeType::kProcessingInstruction || type == NodeType::kDocumentType;
}

/// The node as one that may have children and attributes; null for any other.
inline TreeElement* AsTreeElement(TreeNode* node) {
  return node != nullptr && IsTreeElement(node->type) ? static_cast<TreeElement*>(node) : nullptr;
}

/// Whether the node is a text or a CDATA section.
inline bool IsText(const TreeNode& node) {
  return node.type == NodeType::kText || node.type == NodeType::kCDATASection;
}

/// Which characters a text cannot hold besides the control characters.
enum class TextRule : std::uint8_t {
  kAttribute,    ///< None.
  kComment,      ///< `--`, and `-` at the end.
  kInstruction,  ///< `?>`.
  kIdentifier,   ///< `"`.
};

/// A document node and the memory of all that hangs under it or is detached.
class Tree {
 public:
  Tree() = default;

  [[nodiscard]] TreeElement* Root() { return &root_; }
  /// Drops all nodes.
  void Clear() {
    arena_.Clear();
    root_ = kEmptyRoot;
  }
  /// Whether everything that was to be made was made.
  [[nodiscard]] bool IsComplete() const { return !arena_.HasFailed(); }

  // A text whose data is null could not be copied. What is made of it is null and no part of the
  // tree, and so is everything when memory runs out.

  TreeText Copy(std::string_view text) {
    if (text.size() > std::numeric_limits<std::uint32_t>::max()) return TooLong();
    return {arena_.Copy(text), static_cast<std::uint32_t>(text.size())};
  }
  /// A name, which stays where it is.
  static TreeText InPlace(std::string_view name) {
    return {name.data(), static_cast<std::uint32_t>(name.size())};
  }
  /// A copy that obeys the rule.
  TreeText CopyLegal(std::string_view text, TextRule rule);

  // Detached nodes. Those that are adopted leave their text where it is.

  TreeNode* AdoptNode(NodeType type, TreeText text) {
    void* const place = text.data == nullptr ? nullptr : arena_.Allocate(sizeof(TreeNode));
    if (place == nullptr) return nullptr;
    return new (place) TreeNode{text.data, text.size, type, nullptr, nullptr, nullptr};
  }
  TreeElement* AdoptElement(NodeType type, TreeText name) {
    void* const place = name.data == nullptr ? nullptr : arena_.Allocate(sizeof(TreeElement));
    if (place == nullptr) return nullptr;
    return new (place) TreeElement{
        {name.data, name.size, type, nullptr, nullptr, nullptr},
        nullptr, nullptr, nullptr
    };
  }
  TreeNode* MakeNode(NodeType type, std::string_view text) { return AdoptNode(type, Copy(text)); }

  void AppendAttribute(TreeElement& element, TreeText name, TreeText value) {
    const bool is_copied = name.data != nullptr && value.data != nullptr;
    void* const place = is_copied ? arena_.Allocate(sizeof(TreeAttribute)) : nullptr;
    if (place == nullptr) return;
    auto* const attribute = new (place) TreeAttribute{name, value, nullptr};
    (element.last_attribute == nullptr ? element.first_attribute : element.last_attribute->next) =
        attribute;
    element.last_attribute = attribute;
  }

  /// Makes a detached node the last child.
  static void Append(TreeElement& parent, TreeNode& child) {
    child.parent = &parent;
    TreeNode* const first = parent.first_child;
    if (first == nullptr) {
      parent.first_child = child.previous = &child;
      return;
    }
    child.previous = first->previous;
    first->previous->next = &child;
    first->previous = &child;
  }
  /// The same in front of a child.
  static void InsertBefore(TreeNode& reference, TreeNode& child);
  /// Takes a node from its parent, if it has one.
  static void Detach(TreeNode& node);

 private:
  TreeText TooLong() {
    arena_.SetFailed();
    return {nullptr, 0};
  }

  static constexpr TreeElement kEmptyRoot{
      {nullptr, 0, NodeType::kDocument, nullptr, nullptr, nullptr},
      nullptr, nullptr, nullptr
  };

  Arena arena_;
  TreeElement root_ = kEmptyRoot;
};

}  // namespace dom
