#include "actions/TProperty.h"

#include <algorithm>
#include <bit>

namespace zaf {
namespace {

/// Fields are located through one function that is not const; what is located for reading only is
/// not changed.
const void* Locate(const TProperty& row, const void* object) {
  return row.locate(const_cast<void*>(object));
}

/// How many rows there are, with those of parts.
std::size_t CountRows(std::span<const TProperty> rows) {
  std::size_t count = rows.size();
  for (const TProperty& row : rows)
    if (row.codec != nullptr) count += CountRows(row.codec->Nested());
  return count;
}

/// The row that has this code, or whose part has; null when none has.
const TProperty* FindRow(std::span<const TProperty> rows, FourCharCode code) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    if (row.code == code || FindRow(row.codec->Nested(), code) != nullptr) return &row;
  }
  return nullptr;
}

/// The row of this code, which is `row` or one of its part. `object`, which `row` describes,
/// becomes the field of the row that is returned.
const TProperty& Descend(const TProperty* row, FourCharCode code, void*& object) {
  object = row->locate(object);
  while (row->code != code) {
    row = FindRow(row->codec->Nested(), code);
    object = row->locate(object);
  }
  return *row;
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

TCodeIndex::TCodeIndex(std::span<const TProperty> rows)
    : entries_(std::bit_ceil(2 * CountRows(rows) + 1)) {
  Add(rows, nullptr);
}

/// Adds the codes of `rows`, which lead to `owner` if they are those of a part. Of several rows
/// with one code the first counts.
void TCodeIndex::Add(std::span<const TProperty> rows, const TProperty* owner) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    const TProperty* const found = owner != nullptr ? owner : &row;
    if (row.code != kNoCode && Find(row.code) == nullptr) {
      std::size_t place = PlaceOf(row.code);
      while (entries_[place].row != nullptr) place = Next(place);
      entries_[place] = {row.code, found};
    }
    Add(row.codec->Nested(), found);
  }
}

bool ReadLegacyRow(const TCodeIndex& index, void* object, const TLegacySection& section,
                   Status& status) {
  const TProperty* const found = index.Find(section.code);
  if (found == nullptr) return false;
  const TProperty& row = Descend(found, section.code, object);
  status = row.codec->ReadLegacy(row, object, section);
  return true;
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
  const TProperty* const found = FindRow(rows, code);
  if (found == nullptr) return false;
  void* field = const_cast<void*>(object);  // As in Locate.
  const TProperty& row = Descend(found, code, field);
  status = row.codec->WriteLegacy(row, field, out);
  return true;
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
