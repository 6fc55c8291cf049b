#pragma once

#include "actions/TTableSpecification.h"
#include "actions/flow/TControlFlowSpecification.h"

namespace zaf {

/// A jump that is taken when its test is false.
class TBranchFalseSpecification final
    : public TTableSpecification<TBranchFalseSpecification, TControlFlowSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("brfa");
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
