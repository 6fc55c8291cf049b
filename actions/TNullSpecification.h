#pragma once

#include "actions/TTableSpecification.h"

namespace zaf {

/// The action that does nothing. It is written as a results action and read back as one.
class TNullSpecification final
    : public TTableSpecification<TNullSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("null");
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
