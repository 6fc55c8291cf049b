#pragma once

#include "actions/TTableSpecification.h"
#include "actions/services/TObjectSpecification.h"

namespace zaf {

/// Calls a method of an object; its specific fields are not carried.
class TCallMethodSpecification final
    : public TTableSpecification<TCallMethodSpecification, TObjectSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("calm");
  static constexpr std::string_view kElement = "CallMethodAction";
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
