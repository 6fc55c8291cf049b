#pragma once

#include "actions/TTableSpecification.h"

namespace zaf {

/// The else action: runs its children when no condition of the preceding if and else-ifs holds.
class TElseSpecification final
    : public TTableSpecification<TElseSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("else");
  static constexpr std::string_view kElement = "ElseAction";
  static constexpr std::string_view kLabel = "[Else Action] ";
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
