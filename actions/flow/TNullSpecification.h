#pragma once

#include "actions/TTableSpecification.h"

namespace zaf {

/// The action that does nothing. It is written as a results action and read back as one, so it
/// equals a results action of the same content.
class TNullSpecification final
    : public TTableSpecification<TNullSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("null");
  /// Its element is the results action's.
  static constexpr std::span<const std::string_view> kElements{};
  static std::span<const TProperty> Properties() { return {}; }

  /// Compares type codes, not classes: the results action has the same code.
  [[nodiscard]] bool IsEqual(const TQuerySpecification& other) const override {
    return HasEqualCommonContent(other);
  }
};

}  // namespace zaf
