#pragma once

#include "actions/TTableSpecification.h"
#include "actions/services/TExternalQuerySpecification.h"

namespace zaf {

/// An external action that calls a function of an external library.
class TNTQuerySpecification final
    : public TTableSpecification<TNTQuerySpecification, TExternalQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("adll");
  static constexpr std::string_view kElements[] = {kLibraryElement};
  static std::span<const TProperty> Properties() { return {}; }

  TNTQuerySpecification() { SetPlatform(kLibraryPlatform); }
};

}  // namespace zaf
