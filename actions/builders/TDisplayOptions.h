#pragma once

#include <cstddef>
#include <cstdint>

#include "fields/ChoiceCodec.h"
#include "foundation/TFixedText.h"

namespace zaf {

/// How a page of a builder action shows a column's value. Records of different pages have slots of
/// different widths for the path.
template <std::size_t kPathWidth, std::size_t kCarried>
struct TDisplayOptions {
  std::int32_t kind;               ///< Index into the vocabulary, from 0, as is the format.
  std::int32_t format;             ///< For a normal display, as are the line breaks.
  std::int32_t line_breaks;        ///< A switch: line breaks are kept.
  TFixedText<kPathWidth> path;     ///< Of an image file.
  std::uint8_t carried[kCarried];  ///< Of unknown use; kept for the legacy file.
};

using TListDisplayOptions = TDisplayOptions<128, 32>;
using TDetailDisplayOptions = TDisplayOptions<32, 4>;

static_assert(sizeof(TListDisplayOptions) == 172);
static_assert(sizeof(TDetailDisplayOptions) == 48);
static_assert(offsetof(TDetailDisplayOptions, path) == 12);

extern const TChoiceCodec kListDisplayCodec;
extern const TChoiceCodec kDetailDisplayCodec;

template <>
struct TCodecOf<TListDisplayOptions> {
  static constexpr const TFieldCodec& kCodec = kListDisplayCodec;
};
template <>
struct TCodecOf<TDetailDisplayOptions> {
  static constexpr const TFieldCodec& kCodec = kDetailDisplayCodec;
};

}  // namespace zaf
