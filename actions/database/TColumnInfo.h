#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "fields/RecordUpgrade.h"
#include "fields/TProperty.h"
#include "foundation/TFixedText.h"
#include "foundation/TRecordArray.h"

namespace zaf {

/// An entry of a column dictionary: a column, its types and the column that it refers to.
struct TColumnInfo {
  TFixedText<128> table;
  TFixedText<128> column;
  std::int32_t data_type;    ///< A code of the SQL call-level interface.
  std::uint8_t primary_key;  ///< Only carried, as are the flags.
  std::uint8_t first_flag;
  std::uint8_t second_flag;
  std::uint8_t padding;
  std::int32_t column_type;
  TFixedText<128> referenced_table;
  TFixedText<128> referenced_column;

  static std::span<const TProperty> Properties();
};

static_assert(sizeof(TColumnInfo) == 524);
static_assert(offsetof(TColumnInfo, data_type) == 256);
static_assert(offsetof(TColumnInfo, primary_key) == 260);
static_assert(offsetof(TColumnInfo, first_flag) == 261);
static_assert(offsetof(TColumnInfo, second_flag) == 262);
static_assert(offsetof(TColumnInfo, column_type) == 264);
static_assert(offsetof(TColumnInfo, referenced_table) == 268);
static_assert(offsetof(TColumnInfo, referenced_column) == 396);

using CColumnInfoArray = TRecordArray<TColumnInfo>;

/// From a record with narrow names, whose types take 4 bytes and whose key and flags together take
/// 3.
inline constexpr TUpgradeStep kColumnInfoUpgrade[] = {
    WidenName(0, offsetof(TColumnInfo, table)),
    WidenName(32, offsetof(TColumnInfo, column)),
    {TUpgradeStep::Kind::kNumber, 64, 4, offsetof(TColumnInfo, data_type), 4},
    {TUpgradeStep::Kind::kBytes, 68, 3, offsetof(TColumnInfo, primary_key), 3},
    {TUpgradeStep::Kind::kNumber, 72, 4, offsetof(TColumnInfo, column_type), 4},
    WidenName(76, offsetof(TColumnInfo, referenced_table)),
    WidenName(108, offsetof(TColumnInfo, referenced_column)),
};

}  // namespace zaf
