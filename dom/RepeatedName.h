#pragma once

#include <cstddef>

namespace dom {

class Tree;
struct TreeAttribute;
struct TreeElement;

/// Returns the first attribute of the element that has the same name as an earlier one; null if not
/// found, and when memory runs out, which the tree records. `count` is the number of attributes,
/// which are sorted when there are many.
const TreeAttribute* FindRepeatedName(const TreeElement& element, std::size_t count, Tree& tree);

}  // namespace dom
