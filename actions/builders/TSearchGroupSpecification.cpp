#include "actions/builders/TSearchGroupSpecification.h"

#include "fields/PartCodec.h"
#include "fields/RecordUpgrade.h"

namespace zaf {
namespace {

constexpr TRecordUpgrade kUpgrades[] = {
    {Code("scit"), kAnySize, kCopyWhatFits},
    {Code("lcit"), kAnySize, kCopyWhatFits},
    {Code("dcit"), kAnySize, kCopyWhatFits},
    {Code("sfvt"), kAnySize, kCopyWhatFits},
    {Code("dfvt"), kAnySize, kCopyWhatFits},
    {Code("lsrt"), kNarrowSortColumnSize, kNarrowSortColumnUpgrade},
    {Code("lsrt"), kAnySize, kCopyWhatFits},
};

}  // namespace

std::span<const TProperty> TSearchGroupSpecification::Properties() {
  using Builder = TSearchGroupSpecification;
  static constexpr TProperty kRows[] = {
      BasePart(),
      Part<&Builder::search_page_>("SearchPageInfo"),
      Part<&Builder::list_page_>("ListPageInfo"),
      Part<&Builder::details_page_>("DetailsPageInfo"),
      Carried<&Builder::adel_>(Code("adel")),
  };
  return kRows;
}

Conversion TSearchGroupSpecification::ConvertLegacyRecord(FourCharCode code, ByteView legacy_record,
                                                          std::span<std::byte> record) {
  if (code == Code("join") || code == Code("dltj"))
    return TJoinItem::ConvertLegacy(legacy_record, record);
  return UpgradeRecord(kUpgrades, code, legacy_record, record);
}

Status TSearchGroupSpecification::ReadLegacy(TDataFile* file, const TRecordHeader& header) {
  if (const Status status = TTableSpecification::ReadLegacy(file, header); status != Status::kOk)
    return status;
  const Status status = search_page_.columns.FinishItems(*file, Code("sfvt"), header.losses);
  return status == Status::kOk
             ? details_page_.columns.FinishItems(*file, Code("dfvt"), header.losses)
             : status;
}

}  // namespace zaf
