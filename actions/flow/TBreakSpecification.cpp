#include "actions/flow/TBreakSpecification.h"

namespace zaf {

std::span<const TProperty> TBreakSpecification::Properties() {
  static constexpr TProperty kRows[] = {
      Attribute<&TBreakSpecification::loop_label_>(Code("llbl"), "LoopLabel"),
  };
  return kRows;
}

}  // namespace zaf
