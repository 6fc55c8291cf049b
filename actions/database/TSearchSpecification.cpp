#include "actions/database/TSearchSpecification.h"

namespace zaf {
namespace {

constexpr TRecordUpgrade kUpgrades[] = {
    {Code("cols"), kAnySize, kColumnInfoUpgrade},
    {Code("slct"), kAnySize, kColumnReferenceUpgrade},
    {Code("ordr"), kAnySize, kOrderInfoUpgrade},
    {Code("grup"), kAnySize, kGroupInfoUpgrade},
    {Code("crit"), 448, kNarrowCriteriaUpgrade},  // Two older sizes, of both lists.
    {Code("crit"), 896, kUnquotedCriteriaUpgrade},
    {Code("have"), 448, kNarrowCriteriaUpgrade},
    {Code("have"), 896, kUnquotedCriteriaUpgrade},
};

}  // namespace

std::span<const TProperty> TSearchSpecification::Properties() {
  using Search = TSearchSpecification;
  static constexpr TProperty kRows[] = {
      AttributeIfSet<&Search::counts_rows_>(Code("totr"), "TotalRows"),
      AttributeIfSet<&Search::is_distinct_>(Code("rdro"), "DistinctRows"),
      ListIfSet<&Search::tables_>(Code("tabl"), "Tables", "TableName"),
      ListIfSet<&Search::dictionary_>(Code("cols"), "DataDictionary", "Column"),
      ListIfSet<&Search::columns_>(Code("slct"), "SearchColumns", "ColumnReference"),
      ListIfSet<&Search::order_>(Code("ordr"), "OrderColumns", "OrderColumn"),
      ListIfSet<&Search::groups_>(Code("grup"), "GroupColumns", "GroupColumn"),
      ListIfSet<&Search::criteria_>(Code("crit"), "Criteria", "CriteriaItem"),
      ListIfSet<&Search::having_criteria_>(Code("have"), "HavingCriteria", "CriteriaItem"),
      ListIfSet<&Search::joins_>(Code("join"), "JoinCriteria", "JoinItem"),
      Child<&Search::start_row_>(Code("strr"), "StartRow"),
      Child<&Search::max_rows_>(Code("maxm"), "MaxRows"),
  };
  return kRows;
}

Conversion TSearchSpecification::ConvertLegacyRecord(FourCharCode code, ByteView legacy_record,
                                                     std::span<std::byte> record) {
  return code == Code("join") ? TJoinItem::ConvertLegacy(legacy_record, record)
                              : UpgradeRecord(kUpgrades, code, legacy_record, record);
}

}  // namespace zaf
