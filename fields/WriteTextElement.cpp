#include "fields/WriteTextElement.h"

#include <cstddef>
#include <string>

#include "fields/TextTraits.h"

namespace zaf {
namespace {

/// Whether the text consists of spaces only: readers would take it for layout.
bool IsBlank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

/// Appends a text without characters that are dropped.
void AppendKept(dom::Element element, std::string_view kept, bool needs_cdata,
                dom::TextOwner owner) {
  if (!needs_cdata && !IsBlank(kept)) {
    element.appendText(kept, owner);
    return;
  }
  constexpr std::string_view kSectionEnd = "]]>";
  for (std::size_t end = kept.find(kSectionEnd); end != std::string_view::npos;
       end = kept.find(kSectionEnd)) {
    element.appendCDATASection(kept.substr(0, end + 2), owner);
    kept.remove_prefix(end + 2);
  }
  element.appendCDATASection(kept, owner);
}

[[gnu::noinline]] void ReportCharacters(TLossReporter& losses, std::string_view name,
                                        std::string_view text, bool has_dropped) {
  if (has_dropped) losses.ReportIn(kNoCode, LossReason::kDroppedCharacters, name);
  if (text.find('\r') != std::string_view::npos)
    losses.ReportIn(kNoCode, LossReason::kChangedLineEnds, name);
}

void AppendExamined(const TXmlWriteScope& scope, std::string_view name, std::string_view text,
                    TTextTraits traits, dom::TextOwner owner) {
  if (scope.context.losses != nullptr) [[unlikely]]
    ReportCharacters(*scope.context.losses, name, text, traits.has_dropped);
  if (!traits.has_dropped) {
    AppendKept(scope.element, text, traits.needs_cdata, owner);
    return;
  }
  std::string kept(text);
  std::erase_if(kept, IsDroppedCharacter);
  AppendKept(scope.element, kept, traits.needs_cdata, dom::TextOwner::kDocument);
}

}  // namespace

dom::Element WriteTextElement(const TXmlWriteScope& scope, std::string_view name,
                              std::string_view text) {
  const dom::Element parent = scope.element;
  if (text.empty()) return parent.appendElement(name);
  // Most texts are short and simple. One that begins with a space may be blank.
  if (text.size() <= dom::kBlock && text.front() != ' ') {
    dom::ShortText copy;
    if (CopySimple(text, copy)) return parent.appendPlainElement(name, copy);
  }
  const TTextTraits traits = ExamineText(text);
  if (!traits.has_dropped && !traits.needs_cdata && !IsBlank(text))
    return parent.appendPlainElement(name, text);
  const TXmlWriteScope own{scope.context, parent.appendElement(name), {}};
  AppendExamined(own, name, text, traits, dom::TextOwner::kDocument);
  return own.element;
}

void AppendText(const TXmlWriteScope& scope, std::string_view name, std::string_view text,
                dom::TextOwner owner) {
  if (!text.empty()) AppendExamined(scope, name, text, ExamineText(text), owner);
}

void WriteTextAttribute(const TXmlWriteScope& scope, std::string_view name,
                        std::string_view value) {
  if (scope.context.losses != nullptr && ExamineText(value).has_dropped) [[unlikely]]
    scope.context.losses->ReportIn(kNoCode, LossReason::kDroppedCharacters, name);
  scope.element.appendAttribute(name, value);
}

}  // namespace zaf
