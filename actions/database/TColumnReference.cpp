#include "actions/database/TColumnReference.h"

#include "fields/ValueCodecs.h"

namespace zaf {

std::span<const TProperty> TColumnReference::Properties() {
  using Column = TColumnReference;
  static constexpr TProperty kRows[] = {
      Child<&Column::table>(kNoCode, "TableName"),
      Child<&Column::column>(kNoCode, "ColumnName"),
      Child<&Column::alias>(kNoCode, "ColumnAlias"),
  };
  return kRows;
}

}  // namespace zaf
