#include "actions/flow/TWhileSpecification.h"

namespace zaf {

std::span<const TProperty> TWhileSpecification::Properties() {
  using While = TWhileSpecification;
  static constexpr TProperty kRows[] = {
      ChildIfSet<&While::expression_>(Code("lexp"), "Expression"),
      Items<&While::comparisons_>(Code("weit"), "ExpressionInfo",
                                  kExpressionListCodec<TWhileExpressionInfo>),
  };
  return kRows;
}

}  // namespace zaf
