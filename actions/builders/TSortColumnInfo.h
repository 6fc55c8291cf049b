#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "fields/RecordUpgrade.h"
#include "fields/TProperty.h"
#include "foundation/TFixedText.h"
#include "foundation/TRecordArray.h"

namespace zaf {

/// A column by which the list page of a search builder orders its rows.
struct TSortColumnInfo {
  TFixedText<128> owner;
  TFixedText<128> table;
  TFixedText<128> column;
  std::int32_t ascending;  ///< A switch.

  static std::span<const TProperty> Properties();
};

static_assert(sizeof(TSortColumnInfo) == 388);

using CSortColumnInfoArray = TRecordArray<TSortColumnInfo>;

/// The size of older records, which have narrow names, in bytes.
inline constexpr std::size_t kNarrowSortColumnSize = 100;
inline constexpr TUpgradeStep kNarrowSortColumnUpgrade[] = {
    WidenName(0, offsetof(TSortColumnInfo, owner)),
    WidenName(32, offsetof(TSortColumnInfo, table)),
    WidenName(64, offsetof(TSortColumnInfo, column)),
    {TUpgradeStep::Kind::kNumber, 96, 4, offsetof(TSortColumnInfo, ascending), 4},
};

}  // namespace zaf
