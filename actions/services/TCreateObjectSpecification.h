#pragma once

#include "actions/TTableSpecification.h"
#include "actions/services/TObjectSpecification.h"

namespace zaf {

/// Creates an object; its specific fields are not carried.
class TCreateObjectSpecification final
    : public TTableSpecification<TCreateObjectSpecification, TObjectSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("cobj");
  static constexpr std::string_view kElement = "CreateObjectAction";
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
