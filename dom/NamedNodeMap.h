#pragma once

#include <string_view>

#include "dom/Attr.h"
#include "dom/HandleList.h"

namespace dom {

inline Attr NextInList(Attr attribute) { return attribute.getNextAttribute(); }

/// The attributes of an element, in the order in which they were set.
class NamedNodeMap : public HandleList<Attr> {
 public:
  using HandleList::HandleList;

  /// The first attribute with this name; null if not found.
  [[nodiscard]] Attr getNamedItem(std::string_view name) const;
};

}  // namespace dom
