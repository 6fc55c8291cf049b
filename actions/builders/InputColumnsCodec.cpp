#include "actions/builders/InputColumnsCodec.h"

#include <string>

#include "foundation/Attempt.h"

namespace zaf {
namespace {

constexpr std::string_view kListItemElement = "InputListItem";

/// The element of the first column of a list; the others are its next siblings.
dom::Element FirstColumnElement(const TProperty& row, dom::Element parent) {
  return parent.getFirstChildElement(row.name).getFirstChildElement(row.detail);
}

/// The element of a column's input, which holds the list items.
dom::Element InputElement(dom::Element column) {
  return kInputOptionsCodec.FindKindElement(column.getFirstChildElement(kInputOptionsElement));
}

}  // namespace

void TInputColumnsCodec::WriteXml(const TProperty& row, const void* field,
                                  const TXmlWriteScope& scope) const {
  TRecordListCodecBase::WriteXml(row, field, scope);
  const auto& columns = *static_cast<const CInputColumnArray*>(field);
  dom::Element column = FirstColumnElement(row, scope.element);
  for (std::uint32_t i = 0; i < columns.GetCount(); ++i) {
    const std::span<const TListItem> items = columns.GetItems(i);
    const dom::Element list = items.empty() ? dom::Element() : InputElement(column);
    for (const TListItem& item : items)
      WriteXmlRows(TListItem::Properties(), &item,
                   {scope.context, list.appendElement(kListItemElement), scope.action_name});
    column = column.getNextSiblingElement(row.detail);
  }
}

Status TInputColumnsCodec::ReadXml(const TProperty& row, void* field,
                                   const TXmlReadScope& scope) const {
  auto& columns = *static_cast<CInputColumnArray*>(field);
  std::uint32_t i = columns.GetCount();
  const Status status = TRecordListCodecBase::ReadXml(row, field, scope);
  if (status != Status::kOk) return status;
  for (dom::Element column = FirstColumnElement(row, scope.element); column;
       column = column.getNextSiblingElement(row.detail), ++i) {
    if (!columns.GetColumn(i).input.HasList()) continue;
    for (dom::Element element = InputElement(column).getFirstChildElement(kListItemElement);
         element; element = element.getNextSiblingElement(kListItemElement)) {
      TListItem* const item = columns.AppendItem(i);
      if (item == nullptr) return Status::kFailure;
      const Status read = ReadXmlRows(TListItem::Properties(), item, {scope.context, element});
      if (read != Status::kOk) return read;
    }
  }
  return Status::kOk;
}

Status TListItemsCodec::ReadLegacy(const TProperty& row, void* field,
                                   const TLegacySection& section) const {
  auto& columns = *static_cast<CInputColumnArray*>(field);
  const auto read = [&] {
    CDynamicArray records = columns.MakeItemRecords();
    const Status status = records_.ReadLegacy(row, &records, section);
    // The names before each item determine its column.
    if (TByteAccount* const account = section.GetAccount()) account->SetUse(ByteUse::kCarried);
    columns.AddItems(records);
    return status;
  };
  return Attempt(read, Status::kFailure);
}

Status TListItemsCodec::WriteLegacy(const TProperty& row, const void* field,
                                    TSectionWriter& out) const {
  const auto& columns = *static_cast<const CInputColumnArray*>(field);
  const auto write = [&] {
    if (TLossReporter* const losses = out.GetLosses(); losses != nullptr)
      if (const std::size_t count = columns.CountUnwrittenLists(); count > 0)
        losses->ReportIn(row.code, LossReason::kItemsOfSameColumn, std::to_string(count));
    CDynamicArray records = columns.MakeItemRecords();
    return columns.AppendItemRecords(records) ? records_.WriteLegacy(row, &records, out)
                                              : Status::kFailure;
  };
  return Attempt(write, Status::kFailure);
}

bool TListItemsCodec::IsEqual(const void* field, const void* other) const {
  const auto& one = *static_cast<const CInputColumnArray*>(field);
  const auto& two = *static_cast<const CInputColumnArray*>(other);
  return one.HasEqualItems(two);
}

}  // namespace zaf
