#include "fields/ChoiceCodec.h"

#include <algorithm>
#include <cstring>

namespace zaf {

void TChoiceCodec::WriteXml(const TProperty& row, const void* field,
                            const TXmlWriteScope& scope) const {
  const TChoice& choice = ChoiceOf(field);
  const dom::Element kind = scope.element.appendElement(row.name).appendElement(choice.element);
  WriteXmlRows(choice.rows, field, {scope.context, kind, scope.action_name});
}

Status TChoiceCodec::ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const {
  const dom::Element kind = FindKindElement(scope.FindChild(row.name));
  const TChoice* const known = FindChoice(kind.getTagName());
  const TChoice& choice = known == nullptr ? choices_.front() : *known;
  kind.SetRead(true);
  std::memcpy(field, &choice.kind, sizeof choice.kind);
  return ReadXmlRows(choice.rows, field, {scope.context, kind});
}

bool TChoiceCodec::IsEqual(const void* field, const void* other) const {
  const TChoice& choice = ChoiceOf(field);
  return &choice == &ChoiceOf(other) && AreRowsEqual(choice.rows, field, other);
}

void TChoiceCodec::NoteUse(const TProperty&, const void* field, const TRecordUse& use) const {
  const TChoice& choice = ChoiceOf(field);
  use.Add(field, sizeof choice.kind);
  NoteRowsUse(choice.rows, field, use);
}

void TChoiceCodec::ReportWriting(const TProperty& row, const void* field,
                                 const TXmlWriteScope& scope) const {
  std::int32_t kind = 0;
  std::memcpy(&kind, field, sizeof kind);
  if (kind != 0 && ChoiceOf(field).kind != kind) scope.context.losses->ReportValue(row);
}

dom::Element TChoiceCodec::FindKindElement(dom::Element record_element) const {
  dom::Element kind = record_element.getFirstChildElement();
  while (kind && FindChoice(kind.getTagName()) == nullptr) kind = kind.getNextSiblingElement();
  return kind;
}

const TChoice& TChoiceCodec::ChoiceOf(const void* field) const {
  std::int32_t kind = 0;
  std::memcpy(&kind, field, sizeof kind);
  const auto found = std::find_if(choices_.begin(), choices_.end(),
                                  [&](const TChoice& choice) { return choice.kind == kind; });
  return found == choices_.end() ? choices_.front() : *found;
}

const TChoice* TChoiceCodec::FindChoice(std::string_view element) const {
  const auto found = std::find_if(choices_.begin(), choices_.end(), [&](const TChoice& choice) {
    return element == (choice.read_element.empty() ? choice.element : choice.read_element);
  });
  return found == choices_.end() ? nullptr : &*found;
}

}  // namespace zaf
