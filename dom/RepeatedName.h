#pragma once

#include <cstddef>

namespace dom {

class Tree;
struct TreeAttribute;
struct TreeElement;

/// Finds an attribute of the element that has the same name as an earlier one; null when there is
/// none, or when memory runs out, which the tree records. `count` is the number of attributes. Time
/// is linear in the length of the tag.
const TreeAttribute* FindRepeatedName(const TreeElement& element, std::size_t count, Tree& tree);

}  // namespace dom
