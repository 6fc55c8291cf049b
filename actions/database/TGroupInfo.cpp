#include "actions/database/TGroupInfo.h"

#include "fields/ValueCodecs.h"

namespace zaf {

std::span<const TProperty> TGroupInfo::Properties() {
  using Group = TGroupInfo;
  static constexpr TProperty kRows[] = {
      Child<&Group::table>(kNoCode, "TableName"),
      Child<&Group::column>(kNoCode, "ColumnName"),
  };
  return kRows;
}

}  // namespace zaf
