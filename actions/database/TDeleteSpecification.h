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

  /// A switch for the commit that cannot be read is on, and its status is returned.
  Status ReadLegacyProperty(const TLegacySection& section) override;
  static constexpr FourCharCode kReadByHand[] = {Code("cmit")};

 private:
  bool commits_at_once_ = false;
};

}  // namespace zaf
