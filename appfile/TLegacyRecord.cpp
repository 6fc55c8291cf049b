#include "appfile/TLegacyRecord.h"

#include <algorithm>
#include <new>
#include <utility>

#include "fields/SectionMap.h"
#include "foundation/TMemoryFile.h"

namespace zaf {

TLegacyRecord::TLegacyRecord(const std::function<Status(TSectionWriter&)>& write) {
  TMemoryFile file;
  std::uint32_t offset = 0;
  TSectionWriter out(file, offset);
  TRecordHeader header;
  if (write(out) != Status::kOk || out.WriteMap(header.map_offset, header.map_count) != Status::kOk)
    throw std::bad_alloc();
  bytes_ = std::move(file.GetBytes());
  TDataFile image(bytes_);
  TSectionMap map;
  if (map.Open(image, header) != Status::kOk || !map.IsComplete()) throw std::bad_alloc();
  for (TSectionMapEntry entry; map.Next(entry);) sections_.push_back(entry);
}

std::vector<FourCharCode> TLegacyRecord::GetCodes() const {
  std::vector<FourCharCode> codes;
  for (const TSectionMapEntry& section : sections_) codes.push_back(section.code);
  return codes;
}

std::optional<std::string_view> TLegacyRecord::Find(FourCharCode code) const {
  const auto section = std::ranges::find(sections_, code, &TSectionMapEntry::code);
  if (section == sections_.end()) return std::nullopt;
  return AsText(bytes_).substr(section->offset, section->length);
}

void TLegacyRecord::Read(const std::function<void(const TLegacySection&)>& read,
                         const TLegacyRecord* other, FourCharCode code) const {
  const auto read_all = [&](const TLegacyRecord& record, bool reads_code) {
    TDataFile file(record.bytes_);
    for (const TSectionMapEntry& section : record.sections_)
      if ((section.code == code) == reads_code)
        read({&file, section.code, section.offset, section.length});
  };
  read_all(*this, false);
  if (other != nullptr) read_all(*other, true);
}

}  // namespace zaf
