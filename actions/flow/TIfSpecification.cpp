#include "actions/flow/TIfSpecification.h"

namespace zaf {

std::span<const TProperty> TIfSpecification::Properties() {
  using If = TIfSpecification;
  static constexpr TProperty kRows[] = {
      ChildIfSet<&If::expression_>(Code("ifex"), "Expression"),
      Items<&If::comparisons_>(Code("ieei"), "ExpressionInfo",
                               kExpressionListCodec<TIfExpressionInfo>),
  };
  return kRows;
}

Status TIfSpecification::WriteXml(TXmlWriteContext& context, dom::Element element,
                                  dom::Element parent) const {
  for (TIfExpressionInfo& comparison : comparisons_)
    if (comparison.CutOperator() && context.losses != nullptr)
      context.losses->ReportIn(Code("ieei"), LossReason::kCutText, "Operator");
  return TTableSpecification::WriteXml(context, element, parent);
}

}  // namespace zaf
