#pragma once

#include "actions/TTableSpecification.h"
#include "actions/flow/TExpressionInfo.h"

namespace zaf {

/// Does the actions beneath it when its condition holds. Owns the condition.
class TIfSpecification : public TTableSpecification<TIfSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("if  ");
  static constexpr std::string_view kElement = "IfAction";
  static constexpr std::string_view kLabel = "[If Action] ";
  static std::span<const TProperty> Properties();

 private:
  CText expression_;                                     ///< The condition as one expression.
  TExpressionInfoArray<TIfExpressionInfo> comparisons_;  ///< The same, taken apart.
};

}  // namespace zaf
