#include "actions/WriteTextElement.h"

#include <cstddef>
#include <string>

#include "actions/TextTraits.h"

namespace zaf {
namespace {

/// Appends `kept`, which holds no character that is dropped.
void AppendKept(dom::Element element, std::string_view kept, bool needs_cdata) {
  constexpr std::string_view kSectionEnd = "]]>";
  if (needs_cdata) {
    for (std::size_t end = kept.find(kSectionEnd); end != std::string_view::npos;
         end = kept.find(kSectionEnd)) {
      element.appendCDATASection(kept.substr(0, end + 2));
      kept.remove_prefix(end + 2);
    }
  }
  if (needs_cdata || kept.find_first_not_of(' ') == std::string_view::npos) {
    element.appendCDATASection(kept);
  } else {
    element.appendText(kept);
  }
}

}  // namespace

dom::Element WriteTextElement(dom::Element parent, std::string_view name, std::string_view text) {
  const dom::Element element = parent.appendElement(name);
  AppendText(element, text);
  return element;
}

void AppendText(dom::Element element, std::string_view text) {
  if (text.empty()) return;
  const TTextTraits traits = ExamineText(text);
  if (!traits.has_dropped) {
    AppendKept(element, text, traits.needs_cdata);
    return;
  }
  std::string kept(text);
  std::erase_if(kept, IsDroppedCharacter);
  AppendKept(element, kept, traits.needs_cdata);
}

}  // namespace zaf
