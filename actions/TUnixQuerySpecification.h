#pragma once

#include "actions/TExternalQuerySpecification.h"
#include "actions/TTableSpecification.h"

namespace zaf {

/// An external action that runs on the host itself: a command line, or an event to an application.
class TUnixQuerySpecification final
    : public TTableSpecification<TUnixQuerySpecification, TExternalQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("aevt");
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
