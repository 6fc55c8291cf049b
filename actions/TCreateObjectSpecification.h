#pragma once

#include "actions/TObjectSpecification.h"
#include "actions/TTableSpecification.h"

namespace zaf {

/// Creates an object; what is specific to it is not carried.
class TCreateObjectSpecification final
    : public TTableSpecification<TCreateObjectSpecification, TObjectSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("cobj");
  static constexpr std::string_view kElement = "CreateObjectAction";
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
