#include "actions/builders/TBuilderColumn.h"

#include "actions/database/SqlTypes.h"

namespace zaf {

std::span<const TProperty> TBuilderColumn::Properties() {
  using Column = TBuilderColumn;
  static constexpr TProperty kRows[] = {
      Attribute<&Column::data_type>(kNoCode, "DataType", kSqlTypeCodec),
      Attribute<&Column::length>(kNoCode, "Length"),
      Attribute<&Column::primary_key>(kNoCode, "PrimaryKey"),
      Child<&Column::column>(kNoCode, "ColumnName"),
      Child<&Column::table>(kNoCode, "TableName"),
      Child<&Column::owner>(kNoCode, "TableOwner"),
      Child<&Column::title>(kNoCode, "FieldTitle"),
  };
  return kRows;
}

}  // namespace zaf
