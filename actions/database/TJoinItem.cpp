#include "actions/database/TJoinItem.h"

#include <algorithm>

#include "fields/RecordUpgrade.h"
#include "fields/ValueCodecs.h"

namespace zaf {
namespace {

constexpr FourCharCode kEqual = Code("iseq");
constexpr FourCharCode kLeftOuter = Code(" =* ");
constexpr FourCharCode kRightOuter = Code(" *= ");

constexpr TKeyword kJoinKeywords[] = {
    {static_cast<std::int32_t>(kEqual), "Equal"},
    {static_cast<std::int32_t>(kLeftOuter), "LeftOuter"},
    {static_cast<std::int32_t>(kRightOuter), "RightOuter"},
};
constexpr TVocabulary kJoinTypes{kJoinKeywords, TVocabulary::Fallback::kRefuse};
constexpr TKeywordCodec kJoinTypeCodec{kJoinTypes};

using Kind = TUpgradeStep::Kind;

constexpr TUpgradeStep kFromNarrowNames[] = {
    WidenName(0, offsetof(TJoinItem, first_column)),
    WidenName(32, offsetof(TJoinItem, first_table)),
    WidenName(64, offsetof(TJoinItem, second_column)),
    WidenName(96, offsetof(TJoinItem, second_table)),
    {Kind::kNumber, 128, 4, offsetof(TJoinItem, join_operator), 4},
    WidenName(132, offsetof(TJoinItem, further_name)),
    {Kind::kBytes, 164, 1, offsetof(TJoinItem, flag), 1},
};
/// The current record without its padding.
constexpr TUpgradeStep kFromUnpadded[] = {
    {Kind::kBytes, 0, 646, 0, 646},
};

/// All lists of join items have the same records, so the code does not matter.
constexpr TRecordUpgrade kUpgrades[] = {
    {kNoCode, 168, kFromNarrowNames},
    {kNoCode, 646, kFromUnpadded},
};

void MirrorOuterJoin(std::span<std::byte> join_operator) {
  const FourCharCode code = CodeOfText(AsText(join_operator));
  if (code != kLeftOuter && code != kRightOuter) return;
  std::swap(join_operator[1], join_operator[2]);
}

}  // namespace

std::span<const TProperty> TJoinItem::Properties() {
  using Join = TJoinItem;
  static constexpr TProperty kRows[] = {
      Attribute<&Join::join_operator>(kNoCode, "JoinType", kJoinTypeCodec),
      Child<&Join::first_table>(kNoCode, "FirstTable"),
      Child<&Join::first_column>(kNoCode, "FirstColumn"),
      Child<&Join::second_table>(kNoCode, "SecondTable"),
      Child<&Join::second_column>(kNoCode, "SecondColumn"),
      Carried<&Join::further_name>(kNoCode),
      Carried<&Join::flag>(kNoCode),
  };
  return kRows;
}

Conversion TJoinItem::ConvertLegacy(ByteView legacy_record, std::span<std::byte> record) {
  const TRecordUpgrade* const upgrade = FindUpgrade(kUpgrades, kNoCode, legacy_record.size());
  if (upgrade == nullptr) return Conversion::kEmptied;
  const Conversion result = ApplyUpgrade(*upgrade, legacy_record, record);
  MirrorOuterJoin(record.subspan(offsetof(TJoinItem, join_operator), sizeof join_operator));
  return result;
}

Status TJoinItem::ReadXml(const TXmlReadScope& scope) {
  const Status status = ReadXmlRows(Properties(), this, scope);
  if (status != Status::kOk) return status;
  const auto names = {&first_table, &first_column, &second_table, &second_column};
  const bool is_whole =
      std::none_of(names.begin(), names.end(), [](const auto* name) { return name->IsEmpty(); });
  return is_whole ? Status::kOk : Status::kMalformed;
}

}  // namespace zaf
