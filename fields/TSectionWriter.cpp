#include "fields/TSectionWriter.h"

#include <limits>

#include "foundation/CData.h"

namespace zaf {

Status TSectionWriter::Write(FourCharCode code, const CText& text) {
  std::uint32_t written = 0;
  const Status status = file_.WriteText(code, offset_, written, text, TextEnd::kWithNul);
  return Advance(code, written, status);
}

Status TSectionWriter::Write(FourCharCode code, std::int32_t value) {
  std::uint32_t written = 0;
  const Status status = file_.WriteInteger(code, offset_, written, value);
  return Advance(code, written, status);
}

Status TSectionWriter::Write(FourCharCode code, const CTextPtrArray& texts) {
  std::uint32_t written = 0;
  const Status status = file_.WriteTextList(code, offset_, written, texts);
  return Advance(code, written, status);
}

Status TSectionWriter::Write(FourCharCode code, ByteView bytes) {
  CData data;
  if (bytes.size() > std::numeric_limits<std::uint32_t>::max()) return Status::kFailure;
  const auto length = static_cast<std::uint32_t>(bytes.size());
  if (data.Set(bytes.data(), length).length != length) return Status::kFailure;
  std::uint32_t written = 0;
  const Status status = file_.WriteBlock(code, offset_, written, data);
  return Advance(code, written, status);
}

Status TSectionWriter::WriteMap(std::uint32_t& map_offset, std::uint32_t& map_count) {
  CData bytes;
  for (const TSectionMapEntry& entry : map_) {
    std::byte numbers[kSectionMapEntrySize];
    StoreU32(static_cast<std::uint32_t>(entry.code), std::span<std::byte, 4>(numbers, 4));
    StoreU32(entry.offset, std::span<std::byte, 4>(numbers + 4, 4));
    StoreU32(entry.length, std::span<std::byte, 4>(numbers + 8, 4));
    const std::uint32_t length = bytes.GetLength() + kSectionMapEntrySize;
    if (bytes.Splice(bytes.GetLength(), 0, numbers, kSectionMapEntrySize) != length)
      return Status::kFailure;
  }
  std::uint32_t written = 0;
  const Status status = file_.WriteBlock(Code("smap"), offset_, written, bytes);
  if (status != Status::kOk) return status;
  map_offset = offset_;
  map_count = map_.GetCount();
  return Skip(written);
}

Status TSectionWriter::AddEntry(FourCharCode code, std::uint32_t offset, std::uint32_t length) {
  const bool is_added = map_.Add({code, offset, length}) != kNoIndex;
  return is_added ? Status::kOk : Status::kFailure;
}

Status TSectionWriter::Advance(FourCharCode code, std::uint32_t length, Status status) {
  if (status != Status::kOk) return status;
  const std::uint32_t begin = offset_;
  if (const Status skipped = Skip(length); skipped != Status::kOk) return skipped;
  return AddEntry(code, begin, length);
}

Status TSectionWriter::Skip(std::uint32_t length) {
  if (length > std::numeric_limits<std::uint32_t>::max() - offset_) return Status::kFailure;
  offset_ += length;
  return Status::kOk;
}

}  // namespace zaf
