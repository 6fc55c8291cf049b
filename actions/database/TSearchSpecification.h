#pragma once

#include <array>

#include "actions/database/TColumnInfo.h"
#include "actions/database/TColumnReference.h"
#include "actions/database/TCriteriaItem.h"
#include "actions/database/TGroupInfo.h"
#include "actions/database/TJoinItem.h"
#include "actions/database/TOrderInfo.h"
#include "actions/database/TSourceSpecification.h"
#include "foundation/CTextPtrArray.h"

namespace zaf {

/// The search action: one SELECT statement. Owns its lists.
class TSearchSpecification
    : public TTableSpecification<TSearchSpecification, TSourceSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("srch");
  static constexpr std::string_view kElement = "SearchAction";
  static constexpr std::string_view kLabel = "[Search Action] ";
  static std::span<const TProperty> Properties();
  static constexpr std::array<FourCharCode, 13> LegacyOrder() {
    return {kNoCode,      Code("tabl"), Code("cols"), Code("slct"), Code("ordr"),
            Code("grup"), Code("crit"), Code("have"), Code("join"), Code("strr"),
            Code("maxm"), Code("totr"), Code("rdro")};
  }

  /// Outer joins of older records change their direction. A join of an unknown size is kept as an
  /// empty one; a criterion of an unknown size is dropped.
  Conversion ConvertLegacyRecord(FourCharCode code, ByteView legacy_record,
                                 std::span<std::byte> record) override;
  /// An operation of the server's run time.
  virtual void PrepareStatement() {}

 private:
  CTextPtrArray tables_;
  CColumnInfoArray dictionary_;
  CSearchColumnArray columns_;
  COrderInfoArray order_;
  CColumnReferenceArray groups_;
  CCriteriaArray criteria_;
  CCriteriaArray having_criteria_;
  CJoinCriteriaArray joins_;
  CText start_row_;  ///< An expression or a number, as is the row limit.
  CText max_rows_;
  bool counts_rows_ = false;
  bool is_distinct_ = false;
};

}  // namespace zaf
