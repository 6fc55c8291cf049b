#pragma once

#include "actions/database/TJoinItem.h"

namespace zaf {

/// A join of a page of a builder action: its element also says whether the join joins a table to
/// itself, which its two tables tell when it is read.
struct TBuilderJoin : TJoinItem {
  void WriteXml(const TXmlWriteScope& scope) const;
};

static_assert(sizeof(TBuilderJoin) == sizeof(TJoinItem));

using CJoinInfoArray = TRecordArray<TBuilderJoin>;

}  // namespace zaf
