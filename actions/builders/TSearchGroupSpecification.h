#pragma once

#include <array>

#include "actions/builders/SearchBuilderPages.h"
#include "actions/database/TSourceSpecification.h"

namespace zaf {

/// The search builder action: a search application of three pages over one data source. A form
/// accepts the criteria, a list shows the rows found, and a details page changes one of them. It
/// owns its pages.
class TSearchGroupSpecification
    : public TTableSpecification<TSearchGroupSpecification, TSourceSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("sgrp");
  static constexpr std::string_view kElement = "SearchBuilderAction";
  static constexpr std::string_view kLabel = "[Search Builder Action] ";
  static std::span<const TProperty> Properties();
  static constexpr std::array<FourCharCode, 30> LegacyOrder() {
    return {kNoCode,      Code("scit"), Code("lcit"), Code("dcit"), Code("sfvt"), Code("dfvt"),
            Code("lsrt"), Code("join"), Code("dltj"), Code("spgf"), Code("lpgf"), Code("dpgf"),
            Code("mpgs"), Code("adel"), Code("srbn"), Code("updh"), Code("snre"), Code("schd"),
            Code("scft"), Code("mrow"), Code("sbtn"), Code("lchd"), Code("lcft"), Code("fbtn"),
            Code("drbn"), Code("dtbl"), Code("delh"), Code("dchd"), Code("dcft"), Code("dbtn")};
  }

  /// Copies as much of a record of the builder's own lists as fits; joins are upgraded as in a
  /// search action.
  Conversion ConvertLegacyRecord(FourCharCode code, ByteView legacy_record,
                                 std::span<std::byte> record) override;
  /// kMalformed also when columns of the same names share more items than the file's size allows.
  Status ReadLegacy(TDataFile* file, const TRecordHeader& header) override;

 private:
  TSearchPage search_page_;
  TListPage list_page_;
  TDetailsPage details_page_;
  std::int32_t adel_ = 0;  ///< Of unknown use; kept for the legacy file.
};

}  // namespace zaf
