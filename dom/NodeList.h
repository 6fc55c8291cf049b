#pragma once

#include "dom/HandleList.h"
#include "dom/Node.h"

namespace dom {

inline Node NextInList(Node node) { return node.getNextSibling(); }

/// The children of a node.
class NodeList : public HandleList<Node> {
 public:
  using HandleList::HandleList;
};

}  // namespace dom
