#pragma once

#include "actions/TExternalQuerySpecification.h"
#include "actions/TTableSpecification.h"

namespace zaf {

/// An external action that calls a function of an external library.
class TNTQuerySpecification final
    : public TTableSpecification<TNTQuerySpecification, TExternalQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("adll");
  static std::span<const TProperty> Properties() { return {}; }

  TNTQuerySpecification() { SetPlatform(kLibraryPlatform); }
};

}  // namespace zaf
