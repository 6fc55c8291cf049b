#pragma once

#include "actions/TTableSpecification.h"
#include "actions/flow/TExpressionInfo.h"

namespace zaf {

/// The if action: runs its children when its condition holds. Owns the condition.
class TIfSpecification : public TTableSpecification<TIfSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("if  ");
  static constexpr std::string_view kElement = "IfAction";
  static constexpr std::string_view kLabel = "[If Action] ";
  static std::span<const TProperty> Properties();

  /// Also cuts the action's own operators to four characters.
  Status WriteXml(TXmlWriteContext& context, dom::Element element,
                  dom::Element parent) const override;

 private:
  CText expression_;  ///< The condition as a single expression.
  /// The condition as comparisons. Writing cuts the operators, the rest of which is ignored anyway.
  mutable TExpressionInfoArray<TIfExpressionInfo> comparisons_;
};

}  // namespace zaf
