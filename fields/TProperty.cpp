#include "fields/TProperty.h"

#include <algorithm>
#include <utility>

namespace zaf {
namespace {

/// Fields are located through one function that is not const; what is located for reading only is
/// not changed.
const void* Locate(const TProperty& row, const void* object) {
  return row.locate(const_cast<void*>(object));
}

/// Where a field lies in its object, in bytes from its start.
std::uint32_t OffsetOf(const void* field, const void* object) {
  return static_cast<std::uint32_t>(static_cast<const char*>(field) -
                                    static_cast<const char*>(object));
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

bool TFieldCodec::IsWord() const { return false; }

std::span<const TProperty> TFieldCodec::Nested() const { return {}; }

std::span<const TProperty> TFieldCodec::NestedWords() const { return Nested(); }

void TCodeIndex::Add(std::span<const TProperty> rows, const void* part, const void* object) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    const void* const field = Locate(row, part);
    AddField({row.code, OffsetOf(field, object), &row});
    Add(row.codec->Nested(), field, object);
  }
}

void TCodeIndex::Leave(std::span<const FourCharCode> codes) {
  for (const FourCharCode code : codes) AddField({code, 0, nullptr});
}

void TCodeIndex::AddField(const TField& field) {
  if (field.code == kNoCode || Find(field.code).code == field.code) return;
  if (2 * ++count_ > fields_.size()) Resize(2 * fields_.size());
  std::size_t place = PlaceOf(field.code);
  while (fields_[place].code != kNoCode) place = Next(place);
  fields_[place] = field;
}

void TCodeIndex::Resize(std::size_t size) {
  const std::vector<TField> old = std::exchange(fields_, std::vector<TField>(size));
  last_place_ = size - 1;
  count_ = 0;
  for (const TField& field : old) AddField(field);
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

void TRecordWords::Add(std::span<const TProperty> rows, const void* part, const void* record) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    const void* const field = Locate(row, part);
    if (row.codec->IsWord()) offsets_.push_back(OffsetOf(field, record));
    Add(row.codec->NestedWords(), field, record);
  }
}

void TRecordConverter::FixRecord(FourCharCode, const TRecordWords& words, void* record) {
  words.SwapByteOrder(record);
}

void TRecordWords::SwapByteOrder(void* record) const {
  for (const std::uint32_t offset : offsets_) {
    auto* const word = static_cast<unsigned char*>(record) + offset;
    std::reverse(word, word + sizeof(std::uint32_t));
  }
}

}  // namespace zaf
