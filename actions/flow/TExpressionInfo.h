#pragma once

#include <span>

#include "fields/ListCodecs.h"
#include "fields/TProperty.h"
#include "foundation/TFixedText.h"
#include "foundation/TRecordArray.h"

namespace zaf {

/// One comparison of a condition: a record of a legacy file. When two are compared, only the first
/// four characters of the operator count.
struct TExpressionInfo {
  TFixedText<128> conjunction;  ///< Joins it to the comparison before it; empty in the first.
  TFixedText<128> left;
  TFixedText<128> comparison;  ///< The operator.
  TFixedText<128> right;

  /// Cuts the operator to its significant characters. Returns whether it was longer.
  bool CutOperator();
};
static_assert(sizeof(TExpressionInfo) == 512);

/// A comparison of an if or else-if: all four fields are child elements.
struct TIfExpressionInfo : TExpressionInfo {
  static std::span<const TProperty> Properties();
};

/// A comparison of a while: conjunction and operator are attributes, always written.
struct TWhileExpressionInfo : TExpressionInfo {
  static std::span<const TProperty> Properties();
};

/// The comparisons of a condition. Any count is valid, whatever the size of the payload.
template <class Record>
using TExpressionInfoArray = TRecordArray<Record>;

template <class Record>
inline constexpr TRecordListCodec<Record> kExpressionListCodec{Slicing::kOverlap};

}  // namespace zaf
