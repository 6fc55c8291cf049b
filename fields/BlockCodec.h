#pragma once

#include "fields/TProperty.h"
#include "foundation/CData.h"

namespace zaf {

/// A section that is carried as it stands. It has no XML form.
class TBlockCodec final : public TFieldCodec {
 public:
  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  bool IsEqual(const void* field, const void* other) const override;
};

inline constexpr TBlockCodec kBlockCodec{};

template <>
struct TCodecOf<CData> {
  static constexpr const TFieldCodec& kCodec = kBlockCodec;
};

}  // namespace zaf
