#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "fields/PartCodec.h"
#include "fields/TProperty.h"
#include "foundation/TFixedText.h"

namespace zaf {

/// An item of a list that an input offers.
struct TListItem {
  TFixedText<128> name;
  TFixedText<128> value;
  std::int32_t selected;  ///< A switch.

  static std::span<const TProperty> Properties();
};

static_assert(sizeof(TListItem) == 260);

/// A list item of a legacy file: a record that begins with the name of its column, or with three
/// names: the owner, the table and the column.
template <std::size_t kNames>
struct TLegacyListItem {
  TFixedText<128> names[kNames];
  TListItem item;

  static std::span<const TProperty> Properties() {
    static constexpr TProperty kRows[] = {
        InlinePart<&TLegacyListItem::item>(),
    };
    return kRows;
  }
};

static_assert(sizeof(TLegacyListItem<3>) == 644);
static_assert(sizeof(TLegacyListItem<1>) == 388);

}  // namespace zaf
