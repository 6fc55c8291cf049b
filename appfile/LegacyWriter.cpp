#include "appfile/LegacyWriter.h"

#include "fields/SectionMap.h"

namespace zaf {
namespace {

/// Writes an action's record at `offset`, header first, and notes it in the file's map.
Status WriteAction(const TQuerySpecification& action, TDataFile& file, std::uint32_t& offset,
                   TSectionWriter& out) {
  const std::uint32_t header_offset = offset;
  offset += kRecordHeaderSize;
  TRecordHeader header;
  // The sections go behind the header's place, so the place has to be there first.
  if (const Status status = WriteRecordHeader(file, header_offset, header); status != Status::kOk)
    return status;
  if (const Status status = action.WriteLegacy(file, offset, header); status != Status::kOk)
    return status;
  if (const Status status = WriteRecordHeader(file, header_offset, header); status != Status::kOk)
    return status;
  return out.AddEntry(Code("head"), header_offset, kRecordHeaderSize);
}

}  // namespace

Status WriteLegacyApplication(const TApplication& application, TDataFile& file) {
  TRecordHeader header;
  header.format = kWrittenFormat;
  header.type = application.is_run_only ? Code("rdoc") : Code("appl");
  file.SetScrambled(false);
  if (const Status status = WriteRecordHeader(file, 0, header); status != Status::kOk)
    return status;
  file.SetScrambled(application.is_run_only);
  std::uint32_t offset = kRecordHeaderSize;
  TSectionWriter out(file, offset);
  if (const Status status = WriteLegacyRows(TApplication::Properties(), &application, out);
      status != Status::kOk)
    return status;
  for (const TActionEntry* entry = application.actions.GetRoot(); entry != nullptr;
       entry = TActionTree::GetNext(*entry)) {
    const Status status = WriteAction(*entry->action, file, offset, out);
    if (status != Status::kOk) return status;
  }
  if (const Status status = out.WriteMap(header.map_offset, header.map_count);
      status != Status::kOk)
    return status;
  file.SetScrambled(false);
  return WriteRecordHeader(file, 0, header);
}

}  // namespace zaf
