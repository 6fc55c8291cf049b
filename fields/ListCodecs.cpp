#include "fields/ListCodecs.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>

#include "fields/WriteTextElement.h"

namespace zaf {
namespace {

const CDynamicArray& Records(const void* field) {
  return *static_cast<const CDynamicArray*>(field);
}

/// Reports the part of its section that a text list did not take; `first` is the index of the first
/// text that it took.
void ReportTexts(const TLegacySection& section, const CTextPtrArray& texts, std::uint32_t first) {
  std::uint64_t used = sizeof(std::uint32_t);
  for (std::uint32_t i = first; i < texts.GetCount(); ++i) used += texts[i].View().size() + 1;
  // A last text without its NUL ends with the section.
  section.losses->ReportUnread(section, std::min<std::uint64_t>(used, section.length));
  TByteReader reader(section.file->GetImage().subspan(section.offset));
  std::uint32_t count = 0;
  if (section.length == 0 || reader.ReadU32(count) != Status::kOk) return;
  if (const std::uint32_t taken = texts.GetCount() - first; taken < count)
    section.losses->Report(LossReason::kShortList, section, std::to_string(count));
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
  auto& texts = *static_cast<CTextPtrArray*>(field);
  const std::uint32_t first = texts.GetCount();
  const Status status = section.Read(texts);
  if (section.losses != nullptr && status == Status::kOk) ReportTexts(section, texts, first);
  return status;
}

Status TTextListCodec::WriteLegacy(const TProperty& row, const void* field,
                                   TSectionWriter& out) const {
  return out.Write(row.code, *static_cast<const CTextPtrArray*>(field));
}

void TTextListCodec::WriteXml(const TProperty& row, const void* field,
                              const TXmlWriteScope& scope) const {
  const auto& texts = *static_cast<const CTextPtrArray*>(field);
  if (row.form == XmlForm::kChildIfSet && texts.GetCount() == 0) return;
  const TXmlWriteScope list{scope.context, MakeListElement(row, scope.element), {}};
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
  if (count == 0) {
    section.ReportUnread(sizeof count);
    return Status::kOk;
  }
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
  if (slice_size == type_.size && list.IsEmpty()) {
    if (section.losses != nullptr) ReportSlices(section, slice_size, count, Conversion::kWhole);
    const Status status = TakeRecords(section, records, count, list);
    if (status == Status::kOk) NoteUses(section, slice_size, list, 0);
    return status;
  }
  const bool is_current = slicing_ == Slicing::kOverlap || slice_size == type_.size;
  const std::uint32_t first = list.GetCount();
  Conversion conversion = Conversion::kWhole;
  Status status = Status::kOk;
  for (std::uint32_t i = 0; i < count && status == Status::kOk; ++i) {
    // Avoids growing later. Not before the first element, which would release what was reserved.
    if (i == 1) static_cast<void>(list.ReserveElements(first + count));
    const ByteView rest = records.subspan(i * slice_size);
    if (is_current && rest.size() >= type_.size)
      status = list.Add(rest.data()) == kNoIndex ? Status::kFailure : Status::kOk;
    else
      status = AppendSlice(section, is_current ? rest : rest.first(slice_size), list, conversion);
  }
  FixRecords(section, list, first);
  if (section.losses != nullptr) ReportSlices(section, slice_size, count, conversion);
  if (status == Status::kOk && is_current) NoteUses(section, slice_size, list, first);
  return status;
}

void TRecordListCodecBase::NoteUses(const TLegacySection& section, std::size_t slice_size,
                                    const CDynamicArray& list, std::uint32_t first) const {
  TByteAccount* const account = section.GetAccount();
  if (account == nullptr) return;
  std::uint64_t offset = std::uint64_t{section.offset} + sizeof(std::uint32_t);
  const std::uint64_t end = std::uint64_t{section.offset} + section.length;
  // Where records overlap, a byte that one of them uses is used.
  account->SetUse(offset, end - offset, ByteUse::kDropped);
  for (std::uint32_t i = first; i < list.GetCount(); ++i, offset += slice_size) {
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(type_.size, end - offset));
    NoteRowsUse(type_.properties(), list.ElementAt(i),
                TRecordUse(*account, list.ElementAt(i), offset, size));
  }
}

void TRecordListCodecBase::ReportSlices(const TLegacySection& section, std::size_t slice_size,
                                        std::uint32_t count, Conversion conversion) const {
  TLossReporter& losses = *section.losses;
  const std::string size = std::to_string(slice_size);
  if (slicing_ == Slicing::kUpgrade || slice_size >= type_.size)
    losses.ReportUnread(section, sizeof count + std::uint64_t{slice_size} * count);
  if (conversion == Conversion::kDropped)
    losses.Report(LossReason::kUnknownRecordSize, section, size);
  if (conversion == Conversion::kEmptied) losses.Report(LossReason::kEmptiedRecord, section, size);
  const bool is_cut = slice_size > type_.size && conversion == Conversion::kWhole;
  if (conversion == Conversion::kCut || is_cut)
    losses.Report(is_cut ? LossReason::kCutRecord : LossReason::kCutRecordText, section,
                  std::to_string(type_.size));
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
                                         CDynamicArray& list, Conversion& conversion) const {
  void* const record = AppendRecord(list);
  if (record == nullptr) return Status::kFailure;
  if (slicing_ == Slicing::kOverlap) {
    std::memcpy(record, slice.data(), slice.size());
    return Status::kOk;
  }
  const std::span bytes(static_cast<std::byte*>(record), type_.size);
  const Conversion result = section.converter == nullptr ? Conversion::kDropped
                                                         : section.converter->ConvertLegacyRecord(
                                                               section.code, slice, bytes);
  if (result == Conversion::kDropped) list.Remove(list.GetCount() - 1);
  if (result != Conversion::kWhole) conversion = result;
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

void TRecordListCodecBase::ReportWriting(const TProperty& row, const void* field,
                                         const TXmlWriteScope& scope) const {
  const std::span<const TProperty> rows = type_.properties();
  const auto has_no_xml = [](const TProperty& own) { return own.form == XmlForm::kNone; };
  if (std::none_of(rows.begin(), rows.end(), has_no_xml)) return;
  CDynamicArray zero(static_cast<std::uint32_t>(type_.size));
  const void* const empty = AppendRecord(zero);
  const CDynamicArray& records = Records(field);
  const auto is_dropped = [&](const TProperty& own) {
    if (!has_no_xml(own)) return false;
    for (std::uint32_t i = 0; i < records.GetCount(); ++i)
      if (!own.codec->IsEqual(own.locate(records.ElementAt(i)), own.locate(empty))) return true;
    return false;
  };
  if (empty != nullptr && std::any_of(rows.begin(), rows.end(), is_dropped))
    scope.context.losses->ReportIn(row.code, LossReason::kDroppedField, {});
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
