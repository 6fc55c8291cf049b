#pragma once

#include <cstddef>
#include <span>

#include "fields/PartCodec.h"
#include "fields/TProperty.h"
#include "foundation/TFixedText.h"
#include "foundation/TLazyRecord.h"

namespace zaf {

/// The appearance of the table on a builder action's page. In a legacy file it is a section of its
/// own: a longer one is cut, missing fields of a shorter one are empty.
struct TPageFormat {
  TFixedText<128> border{};
  TFixedText<128> border_color{};
  TFixedText<128> background_color{};
  TFixedText<128> cell_padding{};
  TFixedText<128> cell_spacing{};

  static std::span<const TProperty> Properties();
};

static_assert(sizeof(TPageFormat) == 640);

/// The codec of a page format, a part whose legacy section consists of all its bytes.
class TPageFormatCodec final : public TLazyPartCodecBase<TPageFormat> {
 public:
  /// kFailure when memory for the format runs out.
  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
};

inline constexpr TPageFormatCodec kPageFormatCodec{};

template <>
struct TCodecOf<TLazyRecord<TPageFormat>> {
  static constexpr const TFieldCodec& kCodec = kPageFormatCodec;
};

}  // namespace zaf
