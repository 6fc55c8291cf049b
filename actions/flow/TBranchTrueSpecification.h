#pragma once

#include "actions/TTableSpecification.h"
#include "actions/flow/TControlFlowSpecification.h"

namespace zaf {

/// A jump that is taken when its test is true.
class TBranchTrueSpecification final
    : public TTableSpecification<TBranchTrueSpecification, TControlFlowSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("brtr");
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
