#pragma once

#include "actions/database/TDeleteSpecification.h"
#include "actions/database/TValueItem.h"

namespace zaf {

/// The insert action: adds a row of values to a table.
class TInsertSpecification
    : public TTableSpecification<TInsertSpecification, TDeleteSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("insr");
  static constexpr std::string_view kElement = "InsertAction";
  static constexpr std::string_view kLabel = "[Insert Action] ";
  static std::span<const TProperty> Properties();

  Conversion ConvertLegacyRecord(FourCharCode code, ByteView legacy_record,
                                 std::span<std::byte> record) override;

 private:
  CValueArray values_;
};

}  // namespace zaf
