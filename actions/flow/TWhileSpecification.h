#pragma once

#include "actions/TTableSpecification.h"
#include "actions/flow/TExpressionInfo.h"

namespace zaf {

/// The while action: repeats its children as long as its condition holds. Owns the condition.
class TWhileSpecification final
    : public TTableSpecification<TWhileSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("whil");
  static constexpr std::string_view kElement = "WhileAction";
  static constexpr std::string_view kLabel = "[While Loop Action] ";
  static std::span<const TProperty> Properties();

 private:
  CText expression_;                                        ///< The condition as one expression.
  TExpressionInfoArray<TWhileExpressionInfo> comparisons_;  ///< The condition as comparisons.
};

}  // namespace zaf
