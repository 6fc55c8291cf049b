#pragma once

#include <memory>

namespace zaf {

class TQuerySpecification;

/// An action's place in the tree of its application. The tree owns the entries and maintains the
/// links; an entry owns its action.
struct TActionEntry {
  TActionEntry* parent = nullptr;  ///< The root's parent is the root itself.
  TActionEntry* next_sibling = nullptr;
  TActionEntry* first_child = nullptr;
  TActionEntry* last_child = nullptr;
  std::unique_ptr<TQuerySpecification> action;
};

}  // namespace zaf
