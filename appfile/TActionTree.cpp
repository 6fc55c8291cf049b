#include "appfile/TActionTree.h"

#include <utility>

#include "actions/flow/TContainerSpecification.h"
#include "foundation/Attempt.h"
#include "foundation/CaseFolding.h"
#include "foundation/Heap.h"

namespace zaf {

TActionEntry* TActionTree::EnsureRoot() {
  if (root_ != nullptr) return root_;
  auto container = heap::MakeUnique<TContainerSpecification>();
  if (container == nullptr) return nullptr;
  container->SetName(kRootName);
  container->SetParentName(kRootName);
  root_ = Adopt(std::move(container));
  if (root_ != nullptr) root_->parent = root_;
  last_placed_ = root_;
  return root_;
}

Status TActionTree::Place(std::unique_ptr<TQuerySpecification> action) {
  return Attempt([&] { return PlaceByName(std::move(action)); }, Status::kFailure);
}

Status TActionTree::PlaceByName(std::unique_ptr<TQuerySpecification> action) {
  if (root_ == nullptr) {
    TActionEntry* const first = Adopt(std::move(action));
    if (first == nullptr) return Status::kFailure;
    if (first->action->GetTypeCode() == TContainerSpecification::kTypeCode) {
      root_ = first;
      root_->parent = root_;
    } else {
      if (EnsureRoot() == nullptr) return Status::kFailure;
      Hang(*first, *root_);
    }
    last_placed_ = first;
    return Status::kOk;
  }
  if (action->GetParentName().IsEmpty()) action->SetParentName(kRootName);
  // Each action makes the last entry at most one level deeper, so all these walks together take no
  // more steps than there are actions.
  TActionEntry* parent = last_placed_;
  while (!EqualsIgnoringCase(parent->action->GetName().View(), action->GetParentName().View())) {
    if (parent == root_) return Status::kMalformed;
    parent = parent->parent;
  }
  TActionEntry* const entry = Adopt(std::move(action));
  if (entry == nullptr) return Status::kFailure;
  Link(*entry, *parent);
  last_placed_ = entry;
  return Status::kOk;
}

TActionEntry* TActionTree::Adopt(std::unique_ptr<TQuerySpecification> action) {
  const auto append = [&] { return &entries_.emplace_back(); };
  TActionEntry* const entry = Attempt(append, nullptr);
  if (entry == nullptr) return nullptr;
  entry->action = std::move(action);
  entry->action->SetTreeEntry(entry);
  entry->action->SetOwner(owner_);
  return entry;
}

void TActionTree::Hang(TActionEntry& entry, TActionEntry& parent) {
  entry.action->SetParentName({});
  Link(entry, parent);
}

void TActionTree::Link(TActionEntry& entry, TActionEntry& parent) {
  entry.parent = &parent;
  (parent.last_child == nullptr ? parent.first_child : parent.last_child->next_sibling) = &entry;
  parent.last_child = &entry;
}

const TActionEntry* TActionTree::GetNext(const TActionEntry& entry) {
  const TActionEntry* at = &entry;
  if (at->first_child != nullptr) return at->first_child;
  while (at->next_sibling == nullptr && at->parent != at) at = at->parent;
  return at->next_sibling;
}

bool TActionTree::IsEqual(const TActionTree& other) const {
  if (root_ == nullptr || other.root_ == nullptr) {
    const TActionEntry* const root = root_ == nullptr ? other.root_ : root_;
    return root == nullptr ||
           (root->first_child == nullptr && root->action->IsEqual(TContainerSpecification()));
  }
  const TActionEntry* mine = root_;
  const TActionEntry* theirs = other.root_;
  for (; mine != nullptr && theirs != nullptr; mine = GetNext(*mine), theirs = GetNext(*theirs)) {
    const bool same_shape = (mine->first_child == nullptr) == (theirs->first_child == nullptr) &&
                            (mine->next_sibling == nullptr) == (theirs->next_sibling == nullptr);
    if (!same_shape || !mine->action->IsEqual(*theirs->action)) return false;
  }
  return mine == theirs;
}

}  // namespace zaf
