#pragma once

#include <cstddef>
#include <span>

#include "fields/RecordUpgrade.h"
#include "fields/TProperty.h"
#include "foundation/TFixedText.h"
#include "foundation/TRecordArray.h"

namespace zaf {

/// A comparison of a column with a value, which selects rows. Without table and column it is only
/// the conjunction between its neighbours.
struct TCriteriaItem {
  TFixedText<128> conjunction;  ///< Joins the item to the one before it.
  TFixedText<128> comparison;
  TFixedText<128> column;
  TFixedText<128> table;
  TFixedText<128> value;
  TFixedText<128> null_value;  ///< Represents NULL.
  TFixedText<128> include_if_empty;
  TFixedText<128> quote_value;

  static std::span<const TProperty> Properties();

  void WriteXml(const TXmlWriteScope& scope) const;
};

static_assert(sizeof(TCriteriaItem) == 1024);
static_assert(offsetof(TCriteriaItem, value) == 512);
static_assert(offsetof(TCriteriaItem, quote_value) == 896);

using CCriteriaArray = TRecordArray<TCriteriaItem>;

/// Older items have no switch for quotes: their values are quoted.
inline constexpr TUpgradeStep kQuoteCriteriaValue{
    TUpgradeStep::Kind::kConstant, 0, 0, offsetof(TCriteriaItem, quote_value), 128, "true"};

/// From 448 bytes: names are narrow, the value has 256 bytes.
inline constexpr TUpgradeStep kNarrowCriteriaUpgrade[] = {
    WidenName(0, offsetof(TCriteriaItem, conjunction)),
    WidenName(32, offsetof(TCriteriaItem, comparison)),
    WidenName(64, offsetof(TCriteriaItem, column)),
    WidenName(96, offsetof(TCriteriaItem, table)),
    {TUpgradeStep::Kind::kText, 128, 256, offsetof(TCriteriaItem, value), 128},
    WidenName(384, offsetof(TCriteriaItem, null_value)),
    WidenName(416, offsetof(TCriteriaItem, include_if_empty)),
    kQuoteCriteriaValue,
};

/// From 896 bytes: the current record without its last field.
inline constexpr TUpgradeStep kUnquotedCriteriaUpgrade[] = {
    {TUpgradeStep::Kind::kBytes, 0, 896, 0, 896},
    kQuoteCriteriaValue,
};

}  // namespace zaf
