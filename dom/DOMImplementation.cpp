#include "dom/DOMImplementation.h"

#include <limits>
#include <memory>
#include <pugixml.hpp>
#include <string_view>
#include <utility>

#include "dom/BlankPieces.h"
#include "dom/Latin1Decoder.h"
#include "dom/Tree.h"
#include "dom/TreeMaker.h"
#include "dom/WhiteSpace.h"

namespace dom {
namespace {

// References are left to ExpandReferences: pugixml would make UTF-8 of them. The text beside the
// root is asked for so that it is seen. White space is added to these.
constexpr unsigned kParseOptions = pugi::parse_cdata | pugi::parse_eol |
                                   pugi::parse_wconv_attribute | pugi::parse_fragment |
                                   pugi::parse_embed_pcdata;

/// From this size of a document on, memory counts for more than time.
constexpr std::size_t kLarge = std::size_t{1} << 20;

/// Cuts off the white space at the end. Empty when no document ends like that.
///
/// pugixml puts its NUL in the place of the last character of what it parses in place. It knows
/// that one where a tag ends, but a text would be a character short: so nothing but the end of a
/// tag may be there. Behind another '>' it would be a text, and so would `<>`.
std::span<char> CutToLastTag(std::span<char> text) {
  const std::string_view view(text.data(), text.size());
  const std::size_t last = view.find_last_not_of(kWhiteSpace);
  if (last == std::string_view::npos || last == 0 || view[last] != '>') return {};
  const std::size_t before = view.find_last_not_of(kWhiteSpace, last - 1);
  if (before == std::string_view::npos || view[before] == '>' || view[before] == '<') return {};
  return text.first(last + 1);
}

/// The only element of a document that has nothing but white space beside it; else null.
pugi::xml_node FindRoot(const pugi::xml_document& document) {
  pugi::xml_node root;
  for (const pugi::xml_node node : document) {
    if (node.type() == pugi::node_element) {
      if (root) return {};
      root = node;
    } else {
      const std::string_view text = node.value();
      if (node.type() != pugi::node_pcdata ||
          text.find_first_not_of(kWhiteSpace) != std::string_view::npos)
        return {};
    }
  }
  return root;
}

/// Parses into an empty tree. False when the text is refused; when memory runs out the tree knows.
bool Parse(std::span<char> text, Tree& tree) {
  text = CutToLastTag(DecodeToLatin1(text));
  const std::string_view view(text.data(), text.size());
  // To pugixml a NUL is the end, and what looks like a mark in ISO-8859-1 is none.
  if (view.empty() || view.starts_with("\xEF\xBB\xBF") || view.find('\0') != view.npos ||
      view.size() > std::numeric_limits<std::uint32_t>::max())
    return false;
  pugi::xml_document document;
  const unsigned white_space =
      HasBlankPieces(view) ? pugi::parse_ws_pcdata : pugi::parse_ws_pcdata_single;
  const pugi::xml_parse_result result = document.load_buffer_inplace(
      text.data(), text.size(), kParseOptions | white_space, pugi::encoding_utf8);
  if (result.status == pugi::status_out_of_memory) {
    tree.SetIncomplete();
    return true;
  }
  if (!result) return false;
  const pugi::xml_node root = FindRoot(document);
  if (!root) return false;
  MakeTree(root, view, view.size() < kLarge ? ParsedNodes::kKept : ParsedNodes::kGivenBack, tree);
  return true;
}

}  // namespace

Document DOMImplementation::createDocument() { return Document(std::make_unique<Tree>()); }

Document DOMImplementation::createDocument(std::span<char> text) {
  Document document = createDocument();
  if (!document || !Parse(text, *document.tree_)) return {};
  return document;
}

Document DOMImplementation::createDocument(std::span<std::byte> text) {
  return createDocument(std::span(reinterpret_cast<char*>(text.data()), text.size()));
}

}  // namespace dom
