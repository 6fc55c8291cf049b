#include "actions/services/TExternalQuerySpecification.h"

#include <algorithm>
#include <string>
#include <utility>

#include "fields/WriteTextElement.h"

namespace zaf {
namespace {

/// Event code used when the element is absent.
constexpr FourCharCode kBlankEvent = Code("    ");

std::string_view GetText(dom::Element element, std::string_view name, std::string& joined) {
  return element.getFirstChildElement(name).getTextContent(joined);
}

FourCharCode ReadEvent(const TXmlReadContext& context, dom::Element element,
                       std::string_view name) {
  std::string joined;
  const std::string_view text = GetText(element, name, joined);
  if (context.losses != nullptr && text.size() > sizeof(FourCharCode))
    context.losses->ReportAt(element.getFirstChildElement(name), LossReason::kCutText, name);
  return text.empty() ? kBlankEvent : CodeOfText(text);
}

void AppendTerminated(const CText& text, std::string& bytes) {
  bytes.append(UntilNul(text.View())).append(1, '\0');
}

}  // namespace

std::span<const TProperty> TExternalQuerySpecification::Properties() {
  using External = TExternalQuerySpecification;
  static constexpr TProperty kRows[] = {
      ByHand<&External::platform_>(Code("plat")),
      Carried<&External::event_class_>(kNoCode),
      Carried<&External::event_code_>(kNoCode),
      Carried<&External::target_>(kNoCode),
  };
  return kRows;
}

bool TExternalQuerySpecification::HasEvent() const {
  return platform_ == kEventPlatform || platform_ == kOldEventPlatform;
}

Status TExternalQuerySpecification::ReadLegacyProperty(const TLegacySection& section) {
  switch (section.code) {
    case kLibraryPlatform:
    case kEventPlatform:
    case kCommandPlatform:
      return ReadParameters(section);
    default:
      return TTableSpecification::ReadLegacyProperty(section);
  }
}

Status TExternalQuerySpecification::ReadParameters(const TLegacySection& section) {
  ByteView bytes;
  if (const Status status = section.View(bytes); status != Status::kOk) return status;
  const CText target = std::exchange(target_, {});
  const CExternalParameterArray parameters = std::exchange(parameters_, {});
  TByteReader reader(bytes);
  bool is_whole = false;
  const Status status = ReadParts(section, reader, is_whole);
  section.ReportUnread(bytes.size() - reader.Remaining());
  // If the parts end early, the bytes after the section determine where they would end.
  if (TByteAccount* const account = section.GetAccount(); account != nullptr && !is_whole)
    account->SetUse(ByteUse::kCarried);
  section.NoteField(kCommandPlatform, target_.View() == target.View() && parameters_ == parameters);
  return status;
}

Status TExternalQuerySpecification::ReadParts(const TLegacySection& section, TByteReader& reader,
                                              bool& is_whole) {
  if (section.code == kEventPlatform) {
    for (FourCharCode* const event : {&event_class_, &event_code_}) {
      std::uint32_t code = 0;
      if (reader.ReadU32(code) != Status::kOk) return Status::kOk;
      *event = FourCharCode{code};
    }
  }
  std::string_view text;
  if (reader.ReadTerminated(text) != Status::kOk) return Status::kOk;
  target_ = text;
  std::uint32_t count = 0;
  if (reader.ReadU32(count) != Status::kOk) return Status::kOk;
  std::string_view value;
  const std::uint32_t all = count;
  for (; count > 0 && reader.ReadTerminated(text) == Status::kOk &&
         reader.ReadTerminated(value) == Status::kOk;
       --count) {
    TExternalParameter* const parameter = parameters_.Append();
    if (parameter == nullptr) return Status::kFailure;
    parameter->name = text;
    parameter->value = value;
  }
  is_whole = count == 0;
  if (!is_whole && section.losses != nullptr)
    section.losses->Report(LossReason::kShortList, section, std::to_string(all));
  return Status::kOk;
}

Status TExternalQuerySpecification::WriteLegacyProperties(TSectionWriter& out) const {
  for (const FourCharCode code : {kLibraryPlatform, kCommandPlatform, kEventPlatform})
    if (const Status status = WriteParameters(code, out); status != Status::kOk) return status;
  return TTableSpecification::WriteLegacyProperties(out);
}

Status TExternalQuerySpecification::WriteParameters(FourCharCode code, TSectionWriter& out) const {
  const auto write = [&] {
    std::string bytes;
    if (code == kEventPlatform) {
      AppendU32(static_cast<std::uint32_t>(event_class_), bytes);
      AppendU32(static_cast<std::uint32_t>(event_code_), bytes);
    }
    AppendTerminated(target_, bytes);
    AppendU32(parameters_.GetCount(), bytes);
    for (const TExternalParameter& parameter : parameters_) {
      AppendTerminated(parameter.name, bytes);
      AppendTerminated(parameter.value, bytes);
    }
    return out.Write(code, AsBytes(bytes));
  };
  return Attempt(write, Status::kFailure);
}

bool TExternalQuerySpecification::IsEqual(const TQuerySpecification& other) const {
  return TTableSpecification::IsEqual(other) &&
         parameters_ == static_cast<const TExternalQuerySpecification&>(other).parameters_;
}

Status TExternalQuerySpecification::CheckEnvironment(CText& error) const {
  if (platform_ != kCommandPlatform) return Status::kOk;
  const bool is_sound =
      std::all_of(parameters_.begin(), parameters_.end(), [](const TExternalParameter& variable) {
        return !variable.name.IsEmpty() || variable.value.IsEmpty();
      });
  if (is_sound) return Status::kOk;
  error = "External action environment variable has value but no name";
  return Status::kFailure;
}

Status TExternalQuerySpecification::WriteXml(TXmlWriteContext& context, dom::Element,
                                             dom::Element parent) const {
  return Attempt([&] { return WriteElement(context, parent); }, Status::kFailure);
}

Status TExternalQuerySpecification::WriteElement(TXmlWriteContext& context,
                                                 dom::Element parent) const {
  const bool is_command = platform_ == kCommandPlatform;
  const bool is_library = platform_ == kLibraryPlatform;
  if (context.losses != nullptr && !is_command && !is_library && !HasEvent())
    context.losses->ReportIn(Code("plat"), LossReason::kUnknownValue, "the platform");
  const dom::Element element = parent.appendElement(is_command   ? kCommandElement
                                                    : is_library ? kLibraryElement
                                                                 : kEventElement);
  const TXmlWriteScope scope{context, element, GetName().View()};
  static constexpr TProperty kEventRows[] = {
      ChildIfSet<&TExternalQuerySpecification::event_class_>(kNoCode, "EventClass"),
      ChildIfSet<&TExternalQuerySpecification::event_code_>(kNoCode, "EventCode"),
  };
  if (context.losses != nullptr)
    context.losses->SetSection(is_library ? kLibraryPlatform : kEventPlatform);
  const auto write = [&](dom::Element part, std::string_view name, const CText& text) {
    WriteTextElement({context, part, {}}, name, text.View());
  };
  write(element, is_command ? "Command" : "Target", target_);
  if (HasEvent()) WriteXmlRows(kEventRows, this, scope);
  const bool has_names =
      std::any_of(parameters_.begin(), parameters_.end(),
                  [](const TExternalParameter& parameter) { return !parameter.name.IsEmpty(); });
  if (context.losses != nullptr && is_library && has_names)
    context.losses->ReportIn(kLibraryPlatform, LossReason::kDroppedField, {});
  const dom::Element list = element.appendElement(is_library ? "ParameterList" : "VariableList");
  for (const TExternalParameter& parameter : parameters_) {
    if (is_library) {
      write(list, "ParameterItem", parameter.value);
      continue;
    }
    const dom::Element item = list.appendElement("VariableItem");
    write(item, "Name", parameter.name);
    write(item, "Value", parameter.value);
  }
  if (context.losses != nullptr) context.losses->SetSection(kNoCode);
  return TTableSpecification::WriteXml(context, element, parent);
}

Status TExternalQuerySpecification::ReadXml(const TXmlReadContext& context, dom::Element element) {
  return Attempt([&] { return ReadElement(context, element); }, Status::kFailure);
}

Status TExternalQuerySpecification::ReadElement(const TXmlReadContext& context,
                                                dom::Element element) {
  const std::string_view name = element.getTagName();
  platform_ = name == kLibraryElement ? kLibraryPlatform
              : name == kEventElement ? kEventPlatform
                                      : kCommandPlatform;
  const std::string_view target = element.getFirstChildElement("Target") ? "Target" : "Command";
  std::string joined;
  target_ = GetText(element, target, joined);
  if (platform_ == kEventPlatform) {
    event_class_ = ReadEvent(context, element, "EventClass");
    event_code_ = ReadEvent(context, element, "EventCode");
  }
  const bool is_library = platform_ == kLibraryPlatform;
  const std::string_view item_name = is_library ? "ParameterItem" : "VariableItem";
  const dom::Element list =
      element.getFirstChildElement(is_library ? "ParameterList" : "VariableList");
  for (dom::Element item = list.getFirstChildElement(item_name); item;
       item = item.getNextSiblingElement(item_name)) {
    TExternalParameter* const parameter = parameters_.Append();
    if (parameter == nullptr) return Status::kFailure;
    if (!is_library) parameter->name = GetText(item, "Name", joined);
    parameter->value = is_library ? item.getTextContent(joined) : GetText(item, "Value", joined);
  }
  return TTableSpecification::ReadXml(context, element);
}

}  // namespace zaf
