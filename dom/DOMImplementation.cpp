#include "dom/DOMImplementation.h"

#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "dom/Latin1Decoder.h"
#include "dom/PagePool.h"
#include "dom/References.h"
#include "dom/Tree.h"

namespace dom {
namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n";

// References are left to ExpandReferences: pugixml would make UTF-8 of them. The text beside the
// root is asked for so that it is seen.
constexpr unsigned kParseOptions = pugi::parse_cdata | pugi::parse_ws_pcdata | pugi::parse_eol |
                                   pugi::parse_wconv_attribute | pugi::parse_fragment;

/// Cuts off the white space at the end. Empty when no document ends like that.
///
/// pugixml puts its NUL in the place of the last character of what it parses in place. It knows
/// that one where a tag ends, but a text would be a character short: so nothing but the end of a
/// tag may be there. Behind another '>' it would be a text.
std::span<char> CutToLastTag(std::span<char> text) {
  const std::string_view view(text.data(), text.size());
  const std::size_t last = view.find_last_not_of(kWhiteSpace);
  if (last == std::string_view::npos || last == 0 || view[last] != '>') return {};
  const std::size_t before = view.find_last_not_of(kWhiteSpace, last - 1);
  if (before == std::string_view::npos || view[before] == '>') return {};
  return text.first(last + 1);
}

/// Removes the white space beside the root. False when anything else is there, or no root.
bool ReduceToRoot(pugi::xml_node document) {
  int element_count = 0;
  for (pugi::xml_node node = document.first_child(); node;) {
    const pugi::xml_node next = node.next_sibling();
    if (node.type() == pugi::node_element) {
      ++element_count;
    } else {
      const std::string_view text = node.value();
      if (node.type() != pugi::node_pcdata ||
          text.find_first_not_of(kWhiteSpace) != std::string_view::npos)
        return false;
      document.remove_child(node);
    }
    node = next;
  }
  return element_count == 1;
}

bool Parse(std::span<char> text, pugi::xml_document& document) {
  text = CutToLastTag(DecodeToLatin1(text));
  const std::string_view view(text.data(), text.size());
  // To pugixml a NUL is the end, and what looks like a mark in ISO-8859-1 is none.
  if (view.empty() || view.starts_with("\xEF\xBB\xBF") || view.find('\0') != view.npos)
    return false;
  const bool has_references = view.find('&') != view.npos;
  if (!document.load_buffer_inplace(text.data(), text.size(), kParseOptions, pugi::encoding_utf8))
    return false;
  if (!ReduceToRoot(document)) return false;
  if (has_references) ExpandReferences(document);
  return true;
}

}  // namespace

Document DOMImplementation::createDocument() {
  PagePool::Install();
  // Not make_unique, which would throw.
  std::unique_ptr<Document::Tree> tree(new (std::nothrow) Document::Tree);
  if (tree) tree->failure_count_before = PagePool::GetFailureCount();
  return Document(std::move(tree));
}

Document DOMImplementation::createDocument(std::span<char> text) {
  Document document = createDocument();
  if (!document || !Parse(text, document.tree_->document)) return {};
  return document;
}

Document DOMImplementation::createDocument(std::span<std::byte> text) {
  return createDocument(std::span(reinterpret_cast<char*>(text.data()), text.size()));
}

}  // namespace dom
