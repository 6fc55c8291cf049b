#include "actions/flow/TContainerSpecification.h"

namespace zaf {

const TActionEntry* TContainerSpecification::GetNextInTree() const {
  const TActionEntry* entry = GetTreeEntry();
  if (entry == nullptr || entry->first_child != nullptr)
    return entry == nullptr ? nullptr : entry->first_child;
  while (entry->next_sibling == nullptr && entry->parent != entry) entry = entry->parent;
  return entry->next_sibling;
}

}  // namespace zaf
