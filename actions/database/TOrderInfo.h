#pragma once

#include <cstddef>
#include <span>

#include "fields/RecordUpgrade.h"
#include "fields/TProperty.h"
#include "foundation/TFixedText.h"
#include "foundation/TRecordArray.h"

namespace zaf {

/// A column by which a search orders its rows.
struct TOrderInfo {
  TFixedText<128> table;  ///< May begin with the owner and a full stop.
  TFixedText<128> column;
  TFixedText<128> ascending;  ///< "true" in any case of letters; anything else is descending.

  static std::span<const TProperty> Properties();

  void WriteXml(const TXmlWriteScope& scope) const;
  Status ReadXml(const TXmlReadScope& scope);
};

static_assert(sizeof(TOrderInfo) == 384);

using COrderInfoArray = TRecordArray<TOrderInfo>;

inline constexpr TUpgradeStep kOrderInfoUpgrade[] = {
    WidenName(0, offsetof(TOrderInfo, table)),
    WidenName(32, offsetof(TOrderInfo, column)),
    WidenName(64, offsetof(TOrderInfo, ascending)),
};

}  // namespace zaf
