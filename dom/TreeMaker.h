#pragma once

#include <string_view>

namespace pugi {
class xml_node;
}

namespace dom {

class Tree;

/// What becomes of pugixml's nodes when ours are made.
enum class ParsedNodes : bool {
  kKept,
  /// They are given back one by one, which takes time; but then the last of them is gone when the
  /// last of ours is made, and the memory serves for both.
  kGivenBack,
};

/// Makes our nodes of those that pugixml parsed in place, `root` and what is under it, in the empty
/// `tree`. Their texts stay where they are, in `buffer`. Walks by links, so that the depth does not
/// matter. Ends when memory runs out, of which the tree knows.
///
/// pugixml has to have parsed with parse_embed_pcdata: a text at the beginning of an element is
/// then no node there, which spares a third of them.
void MakeTree(pugi::xml_node root, std::string_view buffer, ParsedNodes parsed, Tree& tree);

}  // namespace dom
