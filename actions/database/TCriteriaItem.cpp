#include "actions/database/TCriteriaItem.h"

#include "fields/ValueCodecs.h"
#include "fields/WriteTextElement.h"

namespace zaf {
namespace {

constexpr std::string_view kConjunctionElement = "Conjunction";

}  // namespace

std::span<const TProperty> TCriteriaItem::Properties() {
  using Criteria = TCriteriaItem;
  static constexpr TProperty kRows[] = {
      ChildIfSet<&Criteria::conjunction>(kNoCode, kConjunctionElement),
      Child<&Criteria::table>(kNoCode, "TableName"),
      Child<&Criteria::column>(kNoCode, "ColumnName"),
      Child<&Criteria::comparison>(kNoCode, "Operator"),
      Child<&Criteria::value>(kNoCode, "Value"),
      ChildIfSet<&Criteria::null_value>(kNoCode, "NullValue"),
      Child<&Criteria::quote_value>(kNoCode, "QuoteValue"),
      Child<&Criteria::include_if_empty>(kNoCode, "IncludeIfEmpty"),
  };
  return kRows;
}

void TCriteriaItem::WriteXml(const TXmlWriteScope& scope) const {
  if (table.IsEmpty() && column.IsEmpty()) {
    if (TLossReporter* const losses = scope.context.losses; losses != nullptr) {
      losses->ReportText(conjunction.View(), kConjunctionElement);
      if (!comparison.IsEmpty() || !value.IsEmpty() || !null_value.IsEmpty())
        losses->ReportIn(kNoCode, LossReason::kDroppedField, {});
    }
    WriteTextElement(scope.element, kConjunctionElement, conjunction.View());
  } else {
    WriteXmlRows(Properties(), this, scope);
  }
}

}  // namespace zaf
