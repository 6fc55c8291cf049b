#include "dom/DOMImplementation.h"

#include <memory>
#include <string_view>

#include "dom/Parser.h"

namespace dom {

Document DOMImplementation::createDocument() { return Document(std::make_unique<Tree>()); }

Document DOMImplementation::createDocument(std::span<const char> text, ParseReport* report) {
  ParseReport own;
  Document document = createDocument();
  const std::string_view view(text.data(), text.size());
  const bool is_parsed = Parser::Parse(view, *document.tree_, report == nullptr ? own : *report);
  if (!is_parsed && document.IsComplete()) return {};
  return document;
}

Document DOMImplementation::createDocument(std::span<const std::byte> text, ParseReport* report) {
  return createDocument(std::span(reinterpret_cast<const char*>(text.data()), text.size()), report);
}

}  // namespace dom
