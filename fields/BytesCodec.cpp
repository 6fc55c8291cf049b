#include "fields/BytesCodec.h"

namespace zaf {

Status TBytesCodec::ReadLegacy(const TProperty&, void* field, const TLegacySection& section) const {
  ByteView bytes;
  if (const Status status = section.View(bytes); status != Status::kOk) return status;
  auto& data = *static_cast<CData*>(field);
  const auto size = static_cast<std::uint32_t>(bytes.size());
  return data.Set(bytes.data(), size).length == size ? Status::kOk : Status::kFailure;
}

Status TBytesCodec::WriteLegacy(const TProperty& row, const void* field,
                                TSectionWriter& out) const {
  const auto& data = *static_cast<const CData*>(field);
  return data.GetLength() == 0 ? Status::kOk : out.Write(row.code, data.Bytes());
}

bool TBytesCodec::IsEqual(const void* field, const void* other) const {
  return static_cast<const CData*>(field)->EqualsData(*static_cast<const CData*>(other));
}

}  // namespace zaf
