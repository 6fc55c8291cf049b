#pragma once

#include "actions/TTableSpecification.h"

namespace zaf {

/// A loop over the objects of a collection; its specific fields are not carried.
class TObjectsLoopSpecification final
    : public TTableSpecification<TObjectsLoopSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("oblp");
  static constexpr std::string_view kElement = "ObjectsLoopAction";
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
