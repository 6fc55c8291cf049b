#pragma once

#include "actions/TTableSpecification.h"

namespace zaf {

/// The return action: it ends the program, or goes back to where a branch came from.
class TStopSpecification final
    : public TTableSpecification<TStopSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("stop");
  static constexpr std::string_view kElement = "ReturnAction";
  static constexpr std::string_view kLabel = "[Return Action] ";
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
