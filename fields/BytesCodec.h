#pragma once

#include "fields/TProperty.h"
#include "foundation/CData.h"

namespace zaf {

/// A section of opaque bytes, carried unchanged from legacy file to legacy file. It has no XML
/// form. An empty one has no section.
class TBytesCodec final : public TFieldCodec {
 public:
  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  bool IsEqual(const void* field, const void* other) const override;
};

inline constexpr TBytesCodec kBytesCodec{};

template <>
struct TCodecOf<CData> {
  static constexpr const TFieldCodec& kCodec = kBytesCodec;
};

}  // namespace zaf
