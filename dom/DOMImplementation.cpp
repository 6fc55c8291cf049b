#include "dom/DOMImplementation.h"

#include <memory>
#include <new>
#include <string_view>

#include "dom/Parser.h"

namespace dom {

Document DOMImplementation::createDocument() {
  // Not make_unique, which would throw.
  return Document(std::unique_ptr<Tree>(new (std::nothrow) Tree));
}

Document DOMImplementation::createDocument(std::span<const char> text, ParseReport* report) {
  ParseReport own;
  Document document = createDocument();
  if (!document) return document;
  const std::string_view view(text.data(), text.size());
  const bool is_parsed = Parser::Parse(view, *document.tree_, report == nullptr ? own : *report);
  if (!is_parsed && document.IsComplete()) return {};
  return document;
}

Document DOMImplementation::createDocument(std::span<const std::byte> text, ParseReport* report) {
  return createDocument(std::span(reinterpret_cast<const char*>(text.data()), text.size()), report);
}

}  // namespace dom
