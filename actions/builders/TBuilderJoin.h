#pragma once

#include "actions/database/TJoinItem.h"

namespace zaf {

/// A join of a page of a builder action. Its element also has a switch for a join of a table with
/// itself, which is derived from the two tables when it is read.
struct TBuilderJoin : TJoinItem {
  void WriteXml(const TXmlWriteScope& scope) const;
};

static_assert(sizeof(TBuilderJoin) == sizeof(TJoinItem));

using CJoinInfoArray = TRecordArray<TBuilderJoin>;

}  // namespace zaf
