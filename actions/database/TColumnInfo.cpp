#include "actions/database/TColumnInfo.h"

#include "actions/database/SqlTypes.h"

namespace zaf {

std::span<const TProperty> TColumnInfo::Properties() {
  using Column = TColumnInfo;
  static constexpr TProperty kRows[] = {
      Attribute<&Column::data_type>(kNoCode, "DataType", kSqlTypeCodec),
      Attribute<&Column::column_type>(kNoCode, "ColumnType", kSqlTypeCodec),
      Child<&Column::table>(kNoCode, "TableName"),
      Child<&Column::column>(kNoCode, "ColumnName"),
      Child<&Column::referenced_table>(kNoCode, "RefTable"),
      Child<&Column::referenced_column>(kNoCode, "RefColumn"),
      Carried<&Column::primary_key>(kNoCode),
      Carried<&Column::first_flag>(kNoCode),
      Carried<&Column::second_flag>(kNoCode),
  };
  return kRows;
}

}  // namespace zaf
