#include "actions/OutputCodec.h"

#include <string>

#include "actions/WriteTextElement.h"

namespace zaf {

Status TOutputCodec::ReadLegacy(const TProperty& row, void* field,
                                const TLegacySection& section) const {
  return kTextCodec.ReadLegacy(row, field, section);
}

Status TOutputCodec::WriteLegacy(const TProperty& row, const void* field,
                                 TSectionWriter& out) const {
  return kTextCodec.WriteLegacy(row, field, out);
}

void TOutputCodec::WriteXml(const TProperty& row, const void* field,
                            const TXmlWriteScope& scope) const {
  const auto& text = *static_cast<const CText*>(field);
  if (text.IsEmpty()) return;
  std::string id(scope.action_name);
  id += row.detail;
  const dom::Element output = WriteTextElement(scope.context.outputs, "Output", text.View());
  output.appendAttribute("ID", id);
  output.appendAttribute("Type", "HTML");
  scope.element.appendElement(row.name).appendAttribute("Ref", id);
}

Status TOutputCodec::ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const {
  const dom::Element reference = scope.element.getFirstChildElement(row.name);
  if (!reference) return Status::kOk;
  const dom::Element output = scope.context.outputs.Find(reference.getAttribute("Ref"));
  std::string joined;
  if (output) *static_cast<CText*>(field) = output.getTextContent(joined);
  return Status::kOk;
}

bool TOutputCodec::IsEqual(const void* field, const void* other) const {
  return kTextCodec.IsEqual(field, other);
}

}  // namespace zaf
