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

  /// Cuts the operators, those of the action itself, to four characters.
  Status WriteXml(TXmlWriteContext& context, dom::Element element,
                  dom::Element parent) const override;

 private:
  CText expression_;  ///< The condition as one expression.
  /// The same, taken apart. Writing cuts the operators, whose rest is ignored anyway.
  mutable TExpressionInfoArray<TIfExpressionInfo> comparisons_;
};

}  // namespace zaf
