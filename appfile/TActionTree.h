#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <string_view>

#include "actions/TActionEntry.h"
#include "actions/TQuerySpecification.h"
#include "foundation/Status.h"

namespace zaf {

/// The tree of an application's actions. Owns the entries and, through them, the actions. The root
/// is a container that represents the application. No operation recurses, so the depth of a tree is
/// not limited.
class TActionTree {
 public:
  /// The name of a root container without a record, in the odd spelling of legacy files.
  static constexpr std::string_view kRootName = "ContainerSpecif__1";

  /// `owner`: the application of the actions, which outlives the tree; may be null.
  explicit TActionTree(const TApplication* owner = nullptr) : owner_(owner) {}
  TActionTree(const TActionTree&) = delete;
  TActionTree& operator=(const TActionTree&) = delete;

  [[nodiscard]] const TActionEntry* GetRoot() const { return root_; }
  /// Returns the root; first adds a container with the fixed name if it is absent. Null when
  /// memory runs out.
  TActionEntry* EnsureRoot();

  /// Places an action of a legacy file by the name of its parent. The first action is the root if
  /// it is a container; any other becomes a child of the entry placed last or of its nearest
  /// ancestor with that name (case ignored). An action without parent name gets the root's fixed
  /// name. kMalformed when no entry has the name, kFailure when memory runs out; the action is then
  /// destroyed.
  Status Place(std::unique_ptr<TQuerySpecification> action);

  /// Takes ownership of an action, which is not null, without placing it. Null when memory runs
  /// out; the action is then destroyed.
  TActionEntry* Adopt(std::unique_ptr<TQuerySpecification> action);
  /// Makes an adopted entry the last child of `parent`, whatever the parent name of its action.
  static void Hang(TActionEntry& entry, TActionEntry& parent);

  /// The number of actions, without the root.
  [[nodiscard]] std::uint32_t GetActionCount() const {
    return static_cast<std::uint32_t>(entries_.size()) - (root_ != nullptr ? 1 : 0);
  }

  /// Returns the next entry in depth-first order; null after the last.
  static const TActionEntry* GetNext(const TActionEntry& entry);

  /// Whether both trees have the same shape and equal actions in the same places. A tree without
  /// root equals one with only an empty root, since documents do not write that.
  [[nodiscard]] bool IsEqual(const TActionTree& other) const;

 private:
  Status PlaceByName(std::unique_ptr<TQuerySpecification> action);
  static void Link(TActionEntry& entry, TActionEntry& parent);

  const TApplication* owner_;
  std::list<TActionEntry> entries_;  // Their places do not change.
  TActionEntry* root_ = nullptr;
  TActionEntry* last_placed_ = nullptr;
};

}  // namespace zaf
