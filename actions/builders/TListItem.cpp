#include "actions/builders/TListItem.h"

#include "fields/ValueCodecs.h"

namespace zaf {

std::span<const TProperty> TListItem::Properties() {
  using Item = TListItem;
  static constexpr TProperty kRows[] = {
      Attribute<&Item::name>(kNoCode, "Name"),
      Attribute<&Item::value>(kNoCode, "Value"),
      AttributeIfSet<&Item::selected>(kNoCode, "Selected", kNumberSwitchCodec),
  };
  return kRows;
}

}  // namespace zaf
