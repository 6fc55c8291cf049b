#pragma once

#include <string_view>

namespace dom {

class Tree;
struct TreeAttribute;

/// A handle to an attribute of an element; its lifetime and safety are those of a Node.
class Attr {
 public:
  Attr() = default;
  /// For the classes of this folder; `attribute`, which may be null, belongs to `tree`.
  Attr(TreeAttribute* attribute, Tree* tree) : attribute_(attribute), tree_(tree) {}

  explicit operator bool() const { return attribute_ != nullptr; }
  friend bool operator==(Attr left, Attr right) { return left.attribute_ == right.attribute_; }

  [[nodiscard]] std::string_view getName() const;
  [[nodiscard]] std::string_view getValue() const;
  /// Whether Element::getAttribute has found the attribute.
  [[nodiscard]] bool WasRead() const;
  /// Drops the characters that Element::setAttribute drops.
  void setValue(std::string_view value) const;
  /// The next attribute of the same element, in the order in which they were set; null at the end.
  [[nodiscard]] Attr getNextAttribute() const;

 private:
  TreeAttribute* attribute_ = nullptr;
  Tree* tree_ = nullptr;
};

}  // namespace dom
