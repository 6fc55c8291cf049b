#include "actions/flow/TControlFlowSpecification.h"

namespace zaf {

std::span<const TProperty> TControlFlowSpecification::Properties() {
  using Jump = TControlFlowSpecification;
  static constexpr TProperty kRows[] = {
      Carried<&Jump::target_>(Code("goto")),
      Carried<&Jump::test_>(Code("comp")),
  };
  return kRows;
}

}  // namespace zaf
