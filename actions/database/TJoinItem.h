#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "fields/TProperty.h"
#include "foundation/FourCharCode.h"
#include "foundation/TByteReader.h"
#include "foundation/TFixedText.h"
#include "foundation/TRecordArray.h"

namespace zaf {

/// A join of two tables by a column of each.
struct TJoinItem {
  TFixedText<128> first_column;
  TFixedText<128> first_table;
  TFixedText<128> second_column;
  TFixedText<128> second_table;
  FourCharCode join_operator;    ///< "iseq", " =* " (left outer) or " *= " (right outer).
  TFixedText<128> further_name;  ///< Only carried, as is the flag.
  std::uint8_t flag;
  std::uint8_t padding[3];

  static std::span<const TProperty> Properties();

  /// Fills `record`, a join item of zeros, from a legacy record of another size; an unknown size
  /// leaves it unchanged. In older records outer joins have the opposite meaning, so left and right
  /// are exchanged.
  static Conversion ConvertLegacy(ByteView legacy_record, std::span<std::byte> record);

  /// Reads the rows. kMalformed: the join's type is unknown, or a table or column is missing.
  Status ReadXml(const TXmlReadScope& scope);
};

static_assert(sizeof(TJoinItem) == 648);
static_assert(offsetof(TJoinItem, join_operator) == 512);
static_assert(offsetof(TJoinItem, further_name) == 516);
static_assert(offsetof(TJoinItem, flag) == 644);

using CJoinCriteriaArray = TRecordArray<TJoinItem>;

}  // namespace zaf
