#include "fields/OutputCodec.h"

#include <algorithm>

#include "fields/AssignWithLineFeeds.h"
#include "fields/WriteTextElement.h"

namespace zaf {

Status TOutputCodec::ReadLegacy(const TProperty& row, void* field,
                                const TLegacySection& section) const {
  if (line_feeds_ == LineFeeds::kNotAdded) return TTextCodecBase::ReadLegacy(row, field, section);
  std::string_view text;
  if (const Status status = section.View(text); status != Status::kOk) return status;
  return AssignWithLineFeeds(text, *static_cast<CText*>(field)) ? Status::kOk : Status::kFailure;
}

Status TOutputCodec::WriteLegacy(const TProperty& row, const void* field,
                                 TSectionWriter& out) const {
  if (line_feeds_ == LineFeeds::kNotAdded) return TTextCodecBase::WriteLegacy(row, field, out);
  const auto& text = *static_cast<const CText*>(field);
  CText section(text);
  if (section.GetCharacterCount() != text.GetCharacterCount()) return Status::kFailure;
  section.ReplaceAll("\r\n", "\r");
  // Each return that is left is read back with a line feed.
  if (out.GetLosses() != nullptr &&
      static_cast<std::size_t>(std::ranges::count(section.View(), '\r')) >
          text.GetCharacterCount() - section.GetCharacterCount())
    out.GetLosses()->ReportIn(row.code, LossReason::kAddedLineFeeds, {});
  return TTextCodecBase::WriteLegacy(row, &section, out);
}

void TOutputCodec::WriteXml(const TProperty& row, const void* field,
                            const TXmlWriteScope& scope) const {
  const auto& text = *static_cast<const CText*>(field);
  if (text.IsEmpty()) return;
  std::string id;
  id.reserve(scope.action_name.size() + row.detail.size());
  id.append(scope.action_name).append(row.detail);
  // Not copied: output blocks are most of a document's text, and the action outlives the document.
  const dom::Element output = scope.context.outputs.appendElement("Output");
  AppendText({scope.context, output, {}}, row.name, text.View(), dom::TextOwner::kCaller);
  output.appendAttribute("ID", id);
  output.appendAttribute("Type", "HTML");
  scope.element.appendElement(row.name).appendAttribute("Ref", id);
}

Status TOutputCodec::ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const {
  const dom::Element reference = scope.FindChild(row.name);
  if (!reference) return Status::kOk;
  const std::string_view* const text = scope.context.outputs.Find(reference.getAttribute("Ref"));
  if (text == nullptr) return Status::kOk;
  if (const Status status = scope.context.references.Charge(text->size()); status != Status::kOk)
    return status;
  *static_cast<CText*>(field) = *text;
  return Status::kOk;
}

}  // namespace zaf
