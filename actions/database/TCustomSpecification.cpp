#include "actions/database/TCustomSpecification.h"

namespace zaf {

std::span<const TProperty> TCustomSpecification::Properties() {
  using Custom = TCustomSpecification;
  static constexpr TProperty kRows[] = {
      Child<&Custom::statement_>(Code("cust"), "Custom"),
      Child<&Custom::start_row_>(Code("strr"), "StartRow"),
      Child<&Custom::max_rows_>(Code("maxm"), "MaxRows"),
  };
  return kRows;
}

}  // namespace zaf
