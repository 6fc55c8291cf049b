#pragma once

#include "actions/TTableSpecification.h"

namespace zaf {

/// The action that does nothing. It is written as a results action and read back as one, so one
/// that says the same is its equal.
class TNullSpecification final
    : public TTableSpecification<TNullSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("null");
  /// Its element is the results action's.
  static constexpr std::span<const std::string_view> kElements{};
  static std::span<const TProperty> Properties() { return {}; }

  /// The type code is that of the results action and tells all: the class does not count.
  [[nodiscard]] bool IsEqual(const TQuerySpecification& other) const override {
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    return TQuerySpecification::IsEqual(other);
  }
};

}  // namespace zaf
