#pragma once

#include "actions/TControlFlowSpecification.h"
#include "actions/TTableSpecification.h"

namespace zaf {

/// The jump that is made when its test is false.
class TBranchFalseSpecification final
    : public TTableSpecification<TBranchFalseSpecification, TControlFlowSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("brfa");
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
