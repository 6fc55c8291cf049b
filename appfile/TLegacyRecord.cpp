#include "appfile/TLegacyRecord.h"

#include <algorithm>
#include <new>

#include "fields/SectionMap.h"

namespace zaf {
namespace {

/// A data file that is written in memory sequentially.
class TBytesFile final : public TDataFile {
 public:
  explicit TBytesFile(std::string& bytes) : bytes_(bytes) {}
  Status Seek(FourCharCode, std::uint32_t) override { return Status::kOk; }
  Status Write(std::uint32_t count, void* buffer) override {
    bytes_.append(static_cast<const char*>(buffer), count);
    return Status::kOk;
  }

 private:
  std::string& bytes_;
};

}  // namespace

TLegacyRecord::TLegacyRecord(const std::function<Status(TSectionWriter&)>& write) {
  TBytesFile file(bytes_);
  std::uint32_t offset = 0;
  TSectionWriter out(file, offset);
  TRecordHeader header;
  if (write(out) != Status::kOk || out.WriteMap(header.map_offset, header.map_count) != Status::kOk)
    throw std::bad_alloc();
  TDataFile image(AsBytes(bytes_));
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
  return std::string_view(bytes_).substr(section->offset, section->length);
}

void TLegacyRecord::Read(const std::function<void(const TLegacySection&)>& read,
                         const TLegacyRecord* other, FourCharCode code) const {
  const auto read_all = [&](const TLegacyRecord& record, bool reads_code) {
    TDataFile file(AsBytes(record.bytes_));
    for (const TSectionMapEntry& section : record.sections_)
      if ((section.code == code) == reads_code)
        read({&file, section.code, section.offset, section.length});
  };
  read_all(*this, false);
  if (other != nullptr) read_all(*other, true);
}

}  // namespace zaf
