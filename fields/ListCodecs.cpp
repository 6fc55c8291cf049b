#include "fields/ListCodecs.h"

#include <cstring>
#include <limits>
#include <string>

#include "fields/WriteTextElement.h"

namespace zaf {
namespace {

const CDynamicArray& Records(const void* field) {
  return *static_cast<const CDynamicArray*>(field);
}

/// Appends a record of zeros; null if there is no memory.
void* AppendRecord(CDynamicArray& list) { return list.ElementAt(list.Add(nullptr)); }

}  // namespace

dom::Element MakeListElement(const TProperty& row, dom::Element parent) {
  return row.form == XmlForm::kItems ? parent : parent.appendElement(row.name);
}

dom::Element FindListElement(const TProperty& row, const TXmlReadScope& scope) {
  return row.form == XmlForm::kItems ? scope.element : scope.FindChild(row.name);
}

Status TTextListCodec::ReadLegacy(const TProperty&, void* field,
                                  const TLegacySection& section) const {
  return section.Read(*static_cast<CTextPtrArray*>(field));
}

Status TTextListCodec::WriteLegacy(const TProperty& row, const void* field,
                                   TSectionWriter& out) const {
  return out.Write(row.code, *static_cast<const CTextPtrArray*>(field));
}

void TTextListCodec::WriteXml(const TProperty& row, const void* field,
                              const TXmlWriteScope& scope) const {
  const auto& texts = *static_cast<const CTextPtrArray*>(field);
  if (row.form == XmlForm::kChildIfSet && texts.GetCount() == 0) return;
  const dom::Element list = MakeListElement(row, scope.element);
  for (const CText& text : texts) WriteTextElement(list, row.detail, text.View());
}

Status TTextListCodec::ReadXml(const TProperty& row, void* field,
                               const TXmlReadScope& scope) const {
  auto& texts = *static_cast<CTextPtrArray*>(field);
  std::string joined;
  for (dom::Element item = FindListElement(row, scope).getFirstChildElement(row.detail); item;
       item = item.getNextSiblingElement(row.detail)) {
    if (texts.Append(item.getTextContent(joined)) == nullptr) return Status::kFailure;
  }
  return Status::kOk;
}

bool TTextListCodec::IsEqual(const void* field, const void* other) const {
  return *static_cast<const CTextPtrArray*>(field) == *static_cast<const CTextPtrArray*>(other);
}

Status TRecordListCodecBase::ReadLegacy(const TProperty&, void* field,
                                        const TLegacySection& section) const {
  ByteView payload;
  if (const Status status = section.View(payload); status != Status::kOk) return status;
  if (payload.empty()) return Status::kOk;
  TByteReader reader(payload);
  std::uint32_t count = 0;
  if (reader.ReadU32(count) != Status::kOk) return Status::kMalformed;
  if (count == 0) return Status::kOk;
  if (slicing_ == Slicing::kUpgrade && count > reader.Remaining()) return Status::kMalformed;
  if (const Status status = section.file->ChargeRecords(std::uint64_t{count} * type_.size);
      status != Status::kOk)
    return status;
  return AppendSlices(section, payload.subspan(sizeof count), count,
                      *static_cast<CDynamicArray*>(field));
}

Status TRecordListCodecBase::AppendSlices(const TLegacySection& section, ByteView records,
                                          std::uint32_t count, CDynamicArray& list) const {
  const std::size_t slice_size = records.size() / count;
  if (slice_size == type_.size && list.IsEmpty()) return TakeRecords(section, records, count, list);
  const bool is_current = slicing_ == Slicing::kOverlap || slice_size == type_.size;
  const std::uint32_t first = list.GetCount();
  Status status = Status::kOk;
  for (std::uint32_t i = 0; i < count && status == Status::kOk; ++i) {
    // Saves growing later. What is reserved for an empty list, its first element releases.
    if (i == 1) static_cast<void>(list.ReserveElements(first + count));
    const ByteView rest = records.subspan(i * slice_size);
    if (is_current && rest.size() >= type_.size)
      status = list.Add(rest.data()) == kNoIndex ? Status::kFailure : Status::kOk;
    else
      status = AppendSlice(section, is_current ? rest : rest.first(slice_size), list);
  }
  FixRecords(section, list, first);
  return status;
}

Status TRecordListCodecBase::TakeRecords(const TLegacySection& section, ByteView records,
                                         std::uint32_t count, CDynamicArray& list) const {
  const auto size = static_cast<std::uint32_t>(count * type_.size);
  if (list.Set(records.data(), size).length != size) return Status::kFailure;
  FixRecords(section, list, 0);
  return Status::kOk;
}

void TRecordListCodecBase::FixRecords(const TLegacySection& section, CDynamicArray& list,
                                      std::uint32_t first) const {
  const TRecordNumbers& numbers = type_.numbers();
  for (std::uint32_t i = first; i < list.GetCount(); ++i) {
    if (section.converter != nullptr)
      section.converter->FixRecord(section.code, numbers, list.ElementAt(i));
    else
      numbers.ConvertByteOrder(list.ElementAt(i));
  }
}

Status TRecordListCodecBase::AppendSlice(const TLegacySection& section, ByteView slice,
                                         CDynamicArray& list) const {
  void* const record = AppendRecord(list);
  if (record == nullptr) return Status::kFailure;
  if (slicing_ == Slicing::kOverlap) {
    std::memcpy(record, slice.data(), slice.size());
  } else if (section.converter == nullptr ||
             !section.converter->ConvertLegacyRecord(
                 section.code, slice, std::span(static_cast<std::byte*>(record), type_.size))) {
    list.Remove(list.GetCount() - 1);
  }
  return Status::kOk;
}

Status TRecordListCodecBase::WriteLegacy(const TProperty& row, const void* field,
                                         TSectionWriter& out) const {
  const CDynamicArray& list = Records(field);
  const std::uint32_t count = list.GetCount();
  std::byte number[4];
  const std::uint64_t size = sizeof number + std::uint64_t{count} * type_.size;
  CData payload;
  if (size > std::numeric_limits<std::uint32_t>::max()) return Status::kFailure;
  if (!payload.Reserve(static_cast<std::uint32_t>(size))) return Status::kFailure;
  StoreU32(count, number);
  payload.Set(number, sizeof number, payload.GetCapacity());
  for (std::uint32_t i = 0; i < count; ++i) {
    payload.Splice(payload.GetLength(), 0, list.ElementAt(i),
                   static_cast<std::uint32_t>(type_.size));
    type_.numbers().ConvertByteOrder(payload.GetData() + payload.GetLength() - type_.size);
  }
  return out.Write(row.code, payload.Bytes());
}

void TRecordListCodecBase::WriteXml(const TProperty& row, const void* field,
                                    const TXmlWriteScope& scope) const {
  const CDynamicArray& records = Records(field);
  const std::uint32_t count = records.GetCount();
  if (row.form == XmlForm::kChildIfSet && count == 0) return;
  dom::Element list = MakeListElement(row, scope.element);
  for (std::uint32_t i = 0; i < count; ++i) {
    const dom::Element item = list.appendElement(row.detail);
    type_.write_xml(records.ElementAt(i), {scope.context, item, scope.action_name});
  }
}

Status TRecordListCodecBase::ReadXml(const TProperty& row, void* field,
                                     const TXmlReadScope& scope) const {
  auto& records = *static_cast<CDynamicArray*>(field);
  for (dom::Element item = FindListElement(row, scope).getFirstChildElement(row.detail); item;
       item = item.getNextSiblingElement(row.detail)) {
    void* const record = AppendRecord(records);
    if (record == nullptr) return Status::kFailure;
    if (const Status status = type_.read_xml(record, {scope.context, item});
        status != Status::kOk) {
      records.Remove(records.GetCount() - 1);
      return status;
    }
  }
  return Status::kOk;
}

bool TRecordListCodecBase::IsEqual(const void* field, const void* other) const {
  const CDynamicArray& one = Records(field);
  const CDynamicArray& two = Records(other);
  if (one.GetCount() != two.GetCount()) return false;
  for (std::uint32_t i = 0; i < one.GetCount(); ++i)
    if (!AreRowsEqual(type_.properties(), one.ElementAt(i), two.ElementAt(i))) return false;
  return true;
}

}  // namespace zaf
