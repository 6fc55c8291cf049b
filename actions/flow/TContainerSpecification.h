#pragma once

#include "actions/TTableSpecification.h"

namespace zaf {

/// The plain container: contains other actions and has no fields of its own.
class TContainerSpecification final
    : public TTableSpecification<TContainerSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("cntr");
  static std::span<const TProperty> Properties() { return {}; }

  /// The first action in the container, else the next one after it or after a container around it.
  [[nodiscard]] const TActionEntry* GetNextInTree() const override;
  /// Always true: the run time uses GetNextInTree of a container, not its children.
  [[nodiscard]] bool IsLeaf() const override { return true; }
};

}  // namespace zaf
