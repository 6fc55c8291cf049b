#pragma once

#include <cstddef>
#include <span>

#include "fields/RecordUpgrade.h"
#include "fields/TProperty.h"
#include "foundation/TFixedText.h"
#include "foundation/TRecordArray.h"

namespace zaf {

/// A value to be stored in a column.
struct TValueItem {
  TFixedText<128> name;
  TFixedText<128> value;
  TFixedText<128> null_value;  ///< Represents NULL.
  TFixedText<128> include_if_empty;
  TFixedText<128> quote_value;

  static std::span<const TProperty> Properties();
};

static_assert(sizeof(TValueItem) == 640);
static_assert(offsetof(TValueItem, quote_value) == 512);

using CValueArray = TRecordArray<TValueItem>;

/// From a record with narrow names and a value of 256 bytes, without a switch for quotes: its value
/// is quoted.
inline constexpr TUpgradeStep kValueItemUpgrade[] = {
    WidenName(0, offsetof(TValueItem, name)),
    {TUpgradeStep::Kind::kText, 32, 256, offsetof(TValueItem, value), 128},
    WidenName(288, offsetof(TValueItem, null_value)),
    WidenName(320, offsetof(TValueItem, include_if_empty)),
    {TUpgradeStep::Kind::kConstant, 0, 0, offsetof(TValueItem, quote_value), 128, "true"},
};

}  // namespace zaf
