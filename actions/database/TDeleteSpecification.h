#pragma once

#include "actions/database/TSearchSpecification.h"

namespace zaf {

/// The delete action: deletes the rows of a table that meet the criteria.
class TDeleteSpecification
    : public TTableSpecification<TDeleteSpecification, TSearchSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("dele");
  static constexpr std::string_view kElement = "DeleteAction";
  static constexpr std::string_view kLabel = "[Delete Action] ";
  static std::span<const TProperty> Properties();

  /// If the commit switch cannot be read, it is set, and the status is returned.
  Status ReadLegacyProperty(const TLegacySection& section) override;
  static constexpr FourCharCode kReadByHand[] = {Code("cmit")};

 private:
  bool commits_at_once_ = false;
};

}  // namespace zaf
