#pragma once

#include <cstddef>
#include <span>

#include "fields/RecordUpgrade.h"
#include "fields/TProperty.h"
#include "foundation/TFixedText.h"
#include "foundation/TRecordArray.h"

namespace zaf {

/// A column that a search returns, and its alias in the result.
struct TColumnReference {
  TFixedText<128> table;
  TFixedText<128> column;
  TFixedText<128> alias;

  static std::span<const TProperty> Properties();
};

static_assert(sizeof(TColumnReference) == 384);

using CSearchColumnArray = TRecordArray<TColumnReference>;

inline constexpr TUpgradeStep kColumnReferenceUpgrade[] = {
    WidenName(0, offsetof(TColumnReference, table)),
    WidenName(32, offsetof(TColumnReference, column)),
    WidenName(64, offsetof(TColumnReference, alias)),
};

}  // namespace zaf
