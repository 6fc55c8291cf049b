#pragma once

#include <array>

#include "actions/TTableSpecification.h"

namespace zaf {

/// The branch action: continues with another action, of this application or of another one.
class TBranchSpecification final
    : public TTableSpecification<TBranchSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("bran");
  static constexpr std::string_view kElement = "BranchAction";
  static constexpr std::string_view kLabel = "[Branch Action] ";
  static std::span<const TProperty> Properties();
  static constexpr std::array<FourCharCode, 5> LegacyOrder() {
    return {Code("snam"), Code("dnam"), Code("fnam"), Code("iret"), kNoCode};
  }

  Status ReadLegacyProperty(const TLegacySection& section) override;
  Status WriteLegacyProperties(TSectionWriter& out) const override;

 private:
  CText action_name_;
  CText document_name_;  ///< The application; empty: this one.
  CText full_name_;
  bool is_return_ = false;  ///< Return when the target has ended.
};

}  // namespace zaf
