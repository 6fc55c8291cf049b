#pragma once

#include "actions/TTableSpecification.h"

namespace zaf {

/// The action without effect. It is written and read back as a results action, so it equals a
/// results action with the same content.
class TNullSpecification final
    : public TTableSpecification<TNullSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("null");
  /// It is written as the results action's element.
  static constexpr std::span<const std::string_view> kElements{};
  static std::span<const TProperty> Properties() { return {}; }

  /// Compares type codes, not classes: the results action has the same code.
  [[nodiscard]] bool IsEqual(const TQuerySpecification& other) const override {
    return HasEqualCommonContent(other);
  }
};

}  // namespace zaf
