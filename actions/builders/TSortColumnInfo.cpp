#include "actions/builders/TSortColumnInfo.h"

#include "fields/ValueCodecs.h"

namespace zaf {

std::span<const TProperty> TSortColumnInfo::Properties() {
  using Sort = TSortColumnInfo;
  static constexpr TProperty kRows[] = {
      AttributeIfSet<&Sort::ascending>(kNoCode, "Ascending", kNumberSwitchCodec),
      Child<&Sort::owner>(kNoCode, "TableOwner"),
      Child<&Sort::table>(kNoCode, "TableName"),
      Child<&Sort::column>(kNoCode, "ColumnName"),
  };
  return kRows;
}

}  // namespace zaf
