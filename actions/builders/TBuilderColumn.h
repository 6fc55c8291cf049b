#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "fields/TProperty.h"
#include "foundation/TFixedText.h"

namespace zaf {

/// A column on a page of a builder action: the head of the column records of all pages.
struct TBuilderColumn {
  TFixedText<128> table;
  TFixedText<128> column;
  std::int32_t data_type;  ///< A code of the SQL call-level interface.
  std::uint8_t primary_key;
  std::uint8_t carried[3];  ///< Of unknown use; kept for the legacy file.
  std::int32_t length;      ///< In characters.
  TFixedText<128> owner;
  TFixedText<128> title;

  static std::span<const TProperty> Properties();
};

static_assert(sizeof(TBuilderColumn) == 524);
static_assert(offsetof(TBuilderColumn, data_type) == 256);
static_assert(offsetof(TBuilderColumn, primary_key) == 260);
static_assert(offsetof(TBuilderColumn, length) == 264);
static_assert(offsetof(TBuilderColumn, owner) == 268);
static_assert(offsetof(TBuilderColumn, title) == 396);

}  // namespace zaf
