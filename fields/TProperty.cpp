#include "fields/TProperty.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <utility>

namespace zaf {
namespace {

bool HasXml(const TProperty& row) { return row.form > XmlForm::kBase; }

[[gnu::noinline]] void WriteObserved(std::span<const TProperty> rows, const void* object,
                                     const TXmlWriteScope& scope) {
  TLossReporter& losses = *scope.context.losses;
  const FourCharCode outer = losses.GetSection();
  for (const TProperty& row : rows) {
    if (!HasXml(row)) continue;
    const void* const field = row.locate(object);
    losses.SetSection(row.code != kNoCode ? row.code : outer);
    row.codec->ReportWriting(row, field, scope);
    row.codec->WriteXml(row, field, scope);
  }
  losses.SetSection(outer);
}

[[gnu::noinline]] Status ReadObserved(std::span<const TProperty> rows, void* object,
                                      const TXmlReadScope& scope) {
  for (const TProperty& row : rows) {
    if (!HasXml(row)) continue;
    scope.context.losses->SetElement(scope.element);
    const Status status = row.codec->ReadXml(row, row.locate(object), scope);
    if (status != Status::kOk) return status;
    row.codec->ReportReading(row, row.locate(object), scope);
  }
  return Status::kOk;
}

std::uint32_t OffsetIn(const void* object, const void* field) {
  return static_cast<std::uint32_t>(static_cast<const std::byte*>(field) -
                                    static_cast<const std::byte*>(object));
}

bool HasRow(std::span<const TProperty> rows, FourCharCode code) {
  return std::any_of(rows.begin(), rows.end(), [=](const TProperty& row) {
    return row.codec != nullptr && (row.code == code || HasRow(row.codec->Nested(), code));
  });
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

void TFieldCodec::NoteUse(const TProperty& row, const void* field, const TRecordUse& use) const {
  if (Nested().empty())
    use.Add(field, row.locate.size);
  else
    NoteRowsUse(Nested(), field, use);
}

std::uint64_t TFieldCodec::GetUsed(const void*, const TLegacySection& section) const {
  return section.length;
}

void TFieldCodec::ReportWriting(const TProperty&, const void*, const TXmlWriteScope&) const {}

void TFieldCodec::ReportReading(const TProperty&, const void*, const TXmlReadScope&) const {}

void TCodeIndex::Add(std::span<const TProperty> rows, const void* object, const void* part) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    const void* const field = row.locate(part);
    AddField({row.code, OffsetIn(object, field), &row});
    Add(row.codec->Nested(), object, field);
  }
}

void TCodeIndex::Exclude(std::span<const FourCharCode> codes) {
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

Status TCodeIndex::TField::ReadObserved(void* object, const TLegacySection& section) const {
  void* const field = Locate(object);
  section.losses->NoteField(*row, section);
  const Status status = row->codec->ReadLegacy(*row, field, section);
  if (status == Status::kOk) section.ReportUnread(row->codec->GetUsed(field, section));
  return status;
}

Status WriteLegacyRows(std::span<const TProperty> rows, const void* object, TSectionWriter& out) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    const void* const field = row.locate(object);
    const Status status = row.code != kNoCode ? row.codec->WriteLegacy(row, field, out)
                                              : WriteLegacyRows(row.codec->Nested(), field, out);
    if (status != Status::kOk) return status;
  }
  return Status::kOk;
}

Status WriteLegacyRow(std::span<const TProperty> rows, const void* object, FourCharCode code,
                      TSectionWriter& out) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    if (row.code == code) return row.codec->WriteLegacy(row, row.locate(object), out);
    const std::span<const TProperty> nested = row.codec->Nested();
    if (HasRow(nested, code)) return WriteLegacyRow(nested, row.locate(object), code, out);
  }
  assert(false && "a legacy order has a code that no row has");
  return Status::kFailure;
}

void WriteXmlRows(std::span<const TProperty> rows, const void* object,
                  const TXmlWriteScope& scope) {
  if (scope.context.losses != nullptr) [[unlikely]]
    return WriteObserved(rows, object, scope);
  for (const TProperty& row : rows) {
    if (HasXml(row)) row.codec->WriteXml(row, row.locate(object), scope);
  }
}

Status ReadXmlRows(std::span<const TProperty> rows, void* object, const TXmlReadScope& scope) {
  if (scope.context.losses != nullptr) [[unlikely]]
    return ReadObserved(rows, object, scope);
  for (const TProperty& row : rows) {
    if (!HasXml(row)) continue;
    const Status status = row.codec->ReadXml(row, row.locate(object), scope);
    if (status != Status::kOk) return status;
  }
  return Status::kOk;
}

void NoteRowsUse(std::span<const TProperty> rows, const void* object, const TRecordUse& use) {
  for (const TProperty& row : rows)
    if (row.codec != nullptr && row.form != XmlForm::kNone)
      row.codec->NoteUse(row, row.locate(object), use);
}

bool AreRowsEqual(std::span<const TProperty> rows, const void* object, const void* other) {
  return std::all_of(rows.begin(), rows.end(), [&](const TProperty& row) {
    return row.codec == nullptr || row.codec->IsEqual(row.locate(object), row.locate(other));
  });
}

void TRecordNumbers::Add(std::span<const TProperty> rows, const void* record, const void* part) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    const void* const field = row.locate(part);
    Add(row.codec->NestedNumbers(), record, field);
    if (row.codec->IsNumber32()) offsets_.push_back(OffsetIn(record, field));
  }
}

void TRecordConverter::FixRecord(FourCharCode, const TRecordNumbers& numbers, void* record) {
  numbers.ConvertByteOrder(record);
}

void TRecordNumbers::ConvertByteOrder(void* record) const {
  using std::endian;
  static_assert(endian::native == endian::big || endian::native == endian::little);
  if constexpr (endian::native == endian::little) {
    for (const std::uint32_t offset : offsets_) {
      std::byte* const bytes = static_cast<std::byte*>(record) + offset;
      std::reverse(bytes, bytes + sizeof(std::uint32_t));
    }
  }
}

}  // namespace zaf
