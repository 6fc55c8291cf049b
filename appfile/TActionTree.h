#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "actions/TActionEntry.h"
#include "actions/TQuerySpecification.h"
#include "foundation/Status.h"
#include "foundation/TOwningArray.h"

namespace zaf {

/// The tree of an application's actions. Owns the entries and, through them, the actions. The root
/// is a container that stands for the application itself. No operation recurses, so a tree may be
/// as deep as it likes.
class TActionTree {
 public:
  /// The name of a root container that no file names. The odd spelling is what files hold.
  static constexpr std::string_view kRootName = "ContainerSpecif__1";

  TActionTree() = default;
  TActionTree(const TActionTree&) = delete;
  TActionTree& operator=(const TActionTree&) = delete;

  [[nodiscard]] const TActionEntry* GetRoot() const { return root_; }
  /// The root; a tree that has none gets a container of the fixed name.
  TActionEntry& EnsureRoot();

  /// Places an action of a legacy file by the name of its parent. The first action is the root if
  /// it is a container; any other hangs under the entry placed last or one of the entries above
  /// it, whichever bears the name first (case ignored). An action without parent name is given
  /// the root's fixed name. kMalformed when nobody bears the name; the action is lost then.
  Status Place(std::unique_ptr<TQuerySpecification> action);

  /// Takes an action without placing it.
  TActionEntry& Adopt(std::unique_ptr<TQuerySpecification> action);
  /// Makes an adopted entry the last child of `parent`, whatever its action said of its parent.
  static void Hang(TActionEntry& entry, TActionEntry& parent);

  /// The number of actions, without the root.
  [[nodiscard]] std::uint32_t GetActionCount() const {
    return entries_.GetCount() - (root_ != nullptr ? 1 : 0);
  }

  /// The entry behind this one in depth-first order; null behind the last.
  static const TActionEntry* GetNext(const TActionEntry& entry);

  /// Whether both trees have the same shape and equal actions in the same places.
  [[nodiscard]] bool IsEqual(const TActionTree& other) const;

 private:
  static void Link(TActionEntry& entry, TActionEntry& parent);

  TOwningArray<TActionEntry> entries_;
  TActionEntry* root_ = nullptr;
  TActionEntry* last_placed_ = nullptr;
};

}  // namespace zaf
