#include "fields/BlockCodec.h"

namespace zaf {

Status TBlockCodec::ReadLegacy(const TProperty&, void* field, const TLegacySection& section) const {
  CData scratch;
  ByteView bytes;
  if (const Status status = section.View(scratch, bytes); status != Status::kOk) return status;
  auto& block = *static_cast<CData*>(field);
  const auto size = static_cast<std::uint32_t>(bytes.size());
  return block.Set(bytes.data(), size).length == size ? Status::kOk : Status::kFailure;
}

Status TBlockCodec::WriteLegacy(const TProperty& row, const void* field,
                                TSectionWriter& out) const {
  const auto& block = *static_cast<const CData*>(field);
  return block.GetLength() == 0 ? Status::kOk : out.Write(row.code, block.Bytes());
}

bool TBlockCodec::IsEqual(const void* field, const void* other) const {
  return static_cast<const CData*>(field)->EqualsData(*static_cast<const CData*>(other));
}

}  // namespace zaf
