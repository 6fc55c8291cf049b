#pragma once

#include "actions/TTableSpecification.h"
#include "actions/services/TExternalQuerySpecification.h"

namespace zaf {

/// An external action that runs on the host itself: a command line, or an event to an application.
class TUnixQuerySpecification final
    : public TTableSpecification<TUnixQuerySpecification, TExternalQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("aevt");
  static constexpr std::string_view kElements[] = {kEventElement, kCommandElement};
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
