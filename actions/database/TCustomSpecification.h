#pragma once

#include <array>

#include "actions/database/TSourceSpecification.h"

namespace zaf {

/// The direct DBMS action: sends a statement to the data source unchanged.
class TCustomSpecification final
    : public TTableSpecification<TCustomSpecification, TSourceSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("cust");
  static constexpr std::string_view kElement = "DirectDBMSAction";
  static constexpr std::string_view kLabel = "[Direct DBMS Action] ";
  static std::span<const TProperty> Properties();
  static constexpr std::array<FourCharCode, 4> LegacyOrder() {
    return {kNoCode, Code("cust"), Code("maxm"), Code("strr")};
  }

 private:
  CText statement_;
  CText max_rows_;
  CText start_row_;
};

}  // namespace zaf
