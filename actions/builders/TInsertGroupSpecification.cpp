#include "actions/builders/TInsertGroupSpecification.h"

#include "actions/builders/InputColumnsCodec.h"
#include "fields/OutputCodec.h"
#include "fields/RecordUpgrade.h"

namespace zaf {
namespace {

constexpr TRecordUpgrade kUpgrades[] = {
    {Code("icol"), kAnySize, kCopyWhatFits},
    {Code("fval"), kAnySize, kCopyWhatFits},
};

}  // namespace

std::span<const TProperty> TInsertGroupSpecification::Properties() {
  using Builder = TInsertGroupSpecification;
  static constexpr TProperty kRows[] = {
      BasePart(),
      List<&Builder::columns_>(Code("icol"), "InsertColumns", "InsertColumn"),
      ListItems<&Builder::columns_>(Code("fval")),
      Output<&Builder::header_>(Code("head"), "HeaderOutput", ".Header"),
      Output<&Builder::footer_>(Code("foot"), "FooterOutput", ".Footer"),
      Output<&Builder::response_>(Code("resp"), "InsertResponse", ".Response"),
      Child<&Builder::save_title_>(Code("sbtn"), "SaveButtonTitle"),
      Child<&Builder::reset_title_>(Code("rbtn"), "ResetButtonTitle"),
      Child<&Builder::format_>(Code("frmt"), "PageFormat"),
  };
  return kRows;
}

Conversion TInsertGroupSpecification::ConvertLegacyRecord(FourCharCode code, ByteView legacy_record,
                                                          std::span<std::byte> record) {
  return UpgradeRecord(kUpgrades, code, legacy_record, record);
}

Status TInsertGroupSpecification::ReadLegacy(TDataFile* file, const TRecordHeader& header) {
  const Status status = TTableSpecification::ReadLegacy(file, header);
  return status == Status::kOk ? columns_.FinishItems(*file, Code("fval"), header.losses) : status;
}

}  // namespace zaf
