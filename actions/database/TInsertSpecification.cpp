#include "actions/database/TInsertSpecification.h"

namespace zaf {
namespace {

constexpr TRecordUpgrade kValueUpgrade{Code("valu"), kAnySize, kValueItemUpgrade};

}  // namespace

std::span<const TProperty> TInsertSpecification::Properties() {
  using Insert = TInsertSpecification;
  static constexpr TProperty kRows[] = {
      BasePart(),
      List<&Insert::values_>(kValueUpgrade.code, "ValueList", "ValueItem"),
  };
  return kRows;
}

Conversion TInsertSpecification::ConvertLegacyRecord(FourCharCode code, ByteView legacy_record,
                                                     std::span<std::byte> record) {
  if (code != kValueUpgrade.code)
    return TDeleteSpecification::ConvertLegacyRecord(code, legacy_record, record);
  return ApplyUpgrade(kValueUpgrade, legacy_record, record);
}

}  // namespace zaf
