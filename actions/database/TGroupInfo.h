#pragma once

#include <cstddef>
#include <span>

#include "fields/RecordUpgrade.h"
#include "fields/TProperty.h"
#include "foundation/TFixedText.h"
#include "foundation/TRecordArray.h"

namespace zaf {

/// A reference to a column by which a search groups its rows.
struct TGroupInfo {
  TFixedText<128> table;
  TFixedText<128> column;

  static std::span<const TProperty> Properties();
};

static_assert(sizeof(TGroupInfo) == 256);

using CColumnReferenceArray = TRecordArray<TGroupInfo>;

inline constexpr TUpgradeStep kGroupInfoUpgrade[] = {
    WidenName(0, offsetof(TGroupInfo, table)),
    WidenName(32, offsetof(TGroupInfo, column)),
};

}  // namespace zaf
