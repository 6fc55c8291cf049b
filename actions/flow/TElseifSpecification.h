#pragma once

#include "actions/TTableSpecification.h"
#include "actions/flow/TIfSpecification.h"

namespace zaf {

/// The else-if action: a condition that is tested when none before it holds. It has its own
/// element.
class TElseifSpecification final
    : public TTableSpecification<TElseifSpecification, TIfSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("elif");
  static constexpr std::string_view kElement = "ElseIfAction";
  static constexpr std::string_view kLabel = "[ElseIf Action] ";
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
