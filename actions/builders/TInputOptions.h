#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fields/ChoiceCodec.h"
#include "foundation/FourCharCode.h"
#include "foundation/TFixedText.h"

namespace zaf {

/// A value that the server supplies instead of a visitor.
struct TFixedInput {
  std::int32_t kind;     ///< Index into the vocabulary, from 0.
  TFixedText<128> text;  ///< The SQL text, for the kinds that have one.

  [[nodiscard]] bool HasText() const;
};

/// The input for a column's value on a page of a builder action.
struct TInputOptions {
  FourCharCode kind;  ///< "text", "drop", "pick", "radi", "chek" or "fixd".
  TFixedText<128> default_value;
  std::int32_t width;  ///< Width, height and maximum length in characters.
  std::int32_t height;
  std::int32_t max_length;
  std::uint8_t required;
  std::uint8_t scrolling;
  std::uint8_t password;
  std::uint8_t multiple_or_checked;  ///< Of a pick list; of a check box.
  TFixedText<128> value;             ///< Of a check box.
  TFixedInput fixed;
  std::uint8_t carried[12];  ///< Of unknown use; kept for the legacy file.

  /// Whether the input offers list items: a drop-down list, a pick list or a radio cluster.
  [[nodiscard]] bool HasList() const;
};

static_assert(sizeof(TInputOptions) == 420);
static_assert(offsetof(TInputOptions, default_value) == 4);
static_assert(offsetof(TInputOptions, width) == 132);
static_assert(offsetof(TInputOptions, max_length) == 140);
static_assert(offsetof(TInputOptions, required) == 144);
static_assert(offsetof(TInputOptions, multiple_or_checked) == 147);
static_assert(offsetof(TInputOptions, value) == 148);
static_assert(offsetof(TInputOptions, fixed) == 276);
static_assert(offsetof(TInputOptions, carried) == 408);

inline constexpr std::string_view kInputOptionsElement = "InputOptions";

/// A check box is written under another element name than it is read from. The programs therefore
/// do not recognise it in their own documents and read it as an empty text. Kept deliberately.
extern const TChoiceCodec kInputOptionsCodec;

template <>
struct TCodecOf<TInputOptions> {
  static constexpr const TFieldCodec& kCodec = kInputOptionsCodec;
};

}  // namespace zaf
