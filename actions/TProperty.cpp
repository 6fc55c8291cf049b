#include "actions/TProperty.h"

#include <algorithm>

namespace zaf {
namespace {

/// Fields are located through one function that is not const; what is located for reading only is
/// not changed.
const void* Locate(const TProperty& row, const void* object) {
  return row.locate(const_cast<void*>(object));
}

}  // namespace

Status TFieldCodec::ReadLegacy(const TProperty&, void*, const TLegacySection&) const {
  return Status::kOk;
}

Status TFieldCodec::WriteLegacy(const TProperty&, const void*, TSectionWriter&) const {
  return Status::kOk;
}

void TFieldCodec::WriteXml(const TProperty&, const void*, const TXmlWriteScope&) const {}

Status TFieldCodec::ReadXml(const TProperty&, void*, const TXmlReadScope&) const {
  return Status::kOk;
}

void TFieldCodec::SwapByteOrder(void*) const {}

std::span<const TProperty> TFieldCodec::Nested() const { return {}; }

bool ReadLegacyRow(std::span<const TProperty> rows, void* object, const TLegacySection& section,
                   Status& status) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    if (row.code == section.code && row.code != kNoCode) {
      status = row.codec->ReadLegacy(row, row.locate(object), section);
      return true;
    }
    const std::span<const TProperty> nested = row.codec->Nested();
    if (!nested.empty() && ReadLegacyRow(nested, row.locate(object), section, status)) return true;
  }
  return false;
}

Status WriteLegacyRows(std::span<const TProperty> rows, const void* object, TSectionWriter& out) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    const void* field = Locate(row, object);
    const Status status = row.code != kNoCode ? row.codec->WriteLegacy(row, field, out)
                                              : WriteLegacyRows(row.codec->Nested(), field, out);
    if (status != Status::kOk) return status;
  }
  return Status::kOk;
}

bool WriteLegacyRow(std::span<const TProperty> rows, const void* object, FourCharCode code,
                    TSectionWriter& out, Status& status) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    const void* field = Locate(row, object);
    if (row.code == code) {
      status = row.codec->WriteLegacy(row, field, out);
      return true;
    }
    if (WriteLegacyRow(row.codec->Nested(), field, code, out, status)) return true;
  }
  return false;
}

void WriteXmlRows(std::span<const TProperty> rows, const void* object,
                  const TXmlWriteScope& scope) {
  for (const TProperty& row : rows) {
    if (row.codec != nullptr && row.form != XmlForm::kNone)
      row.codec->WriteXml(row, Locate(row, object), scope);
  }
}

Status ReadXmlRows(std::span<const TProperty> rows, void* object, const TXmlReadScope& scope) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr || row.form == XmlForm::kNone) continue;
    const Status status = row.codec->ReadXml(row, row.locate(object), scope);
    if (status != Status::kOk) return status;
  }
  return Status::kOk;
}

bool AreRowsEqual(std::span<const TProperty> rows, const void* object, const void* other) {
  return std::all_of(rows.begin(), rows.end(), [&](const TProperty& row) {
    return row.codec == nullptr || row.codec->IsEqual(Locate(row, object), Locate(row, other));
  });
}

void SwapRowsByteOrder(std::span<const TProperty> rows, void* record) {
  for (const TProperty& row : rows)
    if (row.codec != nullptr) row.codec->SwapByteOrder(row.locate(record));
}

}  // namespace zaf
