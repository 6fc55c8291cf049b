#include "fields/SectionMap.h"

#include <algorithm>
#include <cstring>

namespace zaf {

Status ReadRecordHeader(TDataFile& file, std::uint32_t offset, TRecordHeader& header) {
  ByteView bytes;
  const Status status = file.ViewBlock(kRecordHeaderCode, offset, kRecordHeaderSize, bytes);
  if (status != Status::kOk) return status;
  TByteReader reader(bytes);
  std::array<std::uint32_t, 4> numbers;
  if (const Status read = reader.ReadU32(numbers); read != Status::kOk) return read;
  header.offset = offset;
  header.format = numbers[0];
  header.type = FourCharCode{numbers[1]};
  header.map_offset = numbers[2];
  header.map_count = numbers[3];
  ByteView name;
  if (const Status read = reader.ReadBytes(kRecordNameWidth, name); read != Status::kOk)
    return read;
  std::memcpy(header.name.bytes, name.data(), name.size());
  return Status::kOk;
}

Status WriteRecordHeader(TDataFile& file, std::uint32_t offset, const TRecordHeader& header) {
  std::byte bytes[kRecordHeaderSize] = {};
  const std::span<std::byte> all(bytes);
  StoreU32(header.format, all.subspan<0, 4>());
  StoreU32(static_cast<std::uint32_t>(header.type), all.subspan<4, 4>());
  StoreU32(header.map_offset, all.subspan<8, 4>());
  StoreU32(header.map_count, all.subspan<12, 4>());
  std::memcpy(bytes + 16, header.name.bytes, kRecordNameWidth);
  return file.WriteAt(kRecordHeaderCode, offset, kRecordHeaderSize, bytes);
}

Status TSectionMap::Open(TDataFile& file, const TRecordHeader& header) {
  entries_ = TByteReader(ByteView());
  is_complete_ = header.map_count == 0;
  const std::uint32_t size = file.GetSize();
  if (header.map_offset >= size) return Status::kOk;
  const std::uint32_t held = (size - header.map_offset) / kSectionMapEntrySize;
  const std::uint32_t count = std::min(held, header.map_count);
  is_complete_ = count == header.map_count;
  if (count == 0) return Status::kOk;
  ByteView bytes;
  const Status status = file.ViewBlock(Code("smap"), header.map_offset,
                                       count * kSectionMapEntrySize, scratch_, bytes);
  if (status == Status::kOk) entries_ = TByteReader(bytes);
  return status;
}

}  // namespace zaf
