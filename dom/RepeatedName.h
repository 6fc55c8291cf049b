#pragma once

#include <cstddef>

namespace dom {

class Tree;
struct TreeAttribute;
struct TreeElement;

/// An attribute of the element that has the name of an earlier one; null when there is none, or
/// when memory runs out, which the tree records. `count` is the number of attributes; takes time
/// linear in the tag.
const TreeAttribute* FindRepeatedName(const TreeElement& element, std::size_t count, Tree& tree);

}  // namespace dom
