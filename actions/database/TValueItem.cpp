#include "actions/database/TValueItem.h"

#include "fields/ValueCodecs.h"

namespace zaf {

std::span<const TProperty> TValueItem::Properties() {
  using Item = TValueItem;
  static constexpr TProperty kRows[] = {
      Child<&Item::name>(kNoCode, "Name"),
      Child<&Item::value>(kNoCode, "Value"),
      Child<&Item::quote_value>(kNoCode, "QuoteValue"),
      Child<&Item::include_if_empty>(kNoCode, "IncludeIfEmpty"),
      Child<&Item::null_value>(kNoCode, "NullValue"),
  };
  return kRows;
}

}  // namespace zaf
