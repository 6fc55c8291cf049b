#include "actions/builders/TPageFormat.h"

#include <algorithm>
#include <cstring>

#include "fields/ValueCodecs.h"

namespace zaf {

std::span<const TProperty> TPageFormat::Properties() {
  using Format = TPageFormat;
  static constexpr TProperty kRows[] = {
      Attribute<&Format::border>(kNoCode, "Border"),
      Attribute<&Format::border_color>(kNoCode, "BorderColor"),
      Attribute<&Format::background_color>(kNoCode, "BackgroundColor"),
      Attribute<&Format::cell_padding>(kNoCode, "CellPadding"),
      Attribute<&Format::cell_spacing>(kNoCode, "CellSpacing"),
  };
  return kRows;
}

Status TPageFormatCodec::ReadLegacy(const TProperty&, void* field,
                                    const TLegacySection& section) const {
  ByteView bytes;
  if (const Status status = section.View(bytes); status != Status::kOk) return status;
  TPageFormat format;
  if (!bytes.empty()) std::memcpy(&format, bytes.data(), std::min(bytes.size(), sizeof format));
  section.ReportUnread(std::min(bytes.size(), sizeof format));
  if (TByteAccount* const account = section.GetAccount()) {
    account->SetUse(ByteUse::kDropped);
    NoteRowsUse(TPageFormat::Properties(), &format,
                TRecordUse(*account, &format, section.offset, bytes.size()));
  }
  return Set(field, format);
}

Status TPageFormatCodec::WriteLegacy(const TProperty& row, const void* field,
                                     TSectionWriter& out) const {
  return out.Write(row.code, std::as_bytes(std::span(&Get(field), 1)));
}

}  // namespace zaf
