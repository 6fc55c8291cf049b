#pragma once

#include <array>

#include "actions/builders/CInputColumnArray.h"
#include "actions/builders/TPageFormat.h"
#include "actions/database/TSourceSpecification.h"
#include "foundation/TLazyRecord.h"

namespace zaf {

using TInsertColumnInfo = TInputColumn;
using TInsertColumnInfoArray = TInputColumnArray<TInsertColumnInfo, 1>;

/// The new record builder action: a form that adds a row to a table, and the page shown in
/// response. It owns its texts and lists.
class TInsertGroupSpecification
    : public TTableSpecification<TInsertGroupSpecification, TSourceSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("igrp");
  static constexpr std::string_view kElement = "NewRecordBuilderAction";
  static constexpr std::string_view kLabel = "[New Record Builder Action] ";
  static std::span<const TProperty> Properties();
  static constexpr std::array<FourCharCode, 9> LegacyOrder() {
    return {kNoCode,      Code("icol"), Code("fval"), Code("frmt"), Code("head"),
            Code("foot"), Code("resp"), Code("sbtn"), Code("rbtn")};
  }

  /// Copies as much of a record of the builder's own lists as fits.
  Conversion ConvertLegacyRecord(FourCharCode code, ByteView legacy_record,
                                 std::span<std::byte> record) override;
  /// kMalformed also when columns of the same name share more items than the file's size allows.
  Status ReadLegacy(TDataFile* file, const TRecordHeader& header) override;

 private:
  TInsertColumnInfoArray columns_;
  CText header_;
  CText footer_;
  CText response_;
  CText save_title_;
  CText reset_title_;
  TLazyRecord<TPageFormat> format_;
};

}  // namespace zaf
