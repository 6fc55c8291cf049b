#include "dom/BlankPieces.h"

#include <algorithm>
#include <cstddef>

#include "dom/WhiteSpace.h"

namespace dom {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

bool IsBlank(char c) { return kWhiteSpace.find(c) != kNone; }

/// Whether the start or empty tag of an element begins with it.
bool IsElement(std::string_view markup) {
  if (markup.size() < 2 || markup[0] != '<') return false;
  const char c = markup[1];
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool HasInstruction(std::string_view content) {
  for (std::size_t at = content.find('?'); at != kNone; at = content.find('?', at + 1))
    if (at != 0 && content[at - 1] == '<') return true;
  return false;
}

/// Takes the next `<!` and what stands in front of it from `content`. False when there is none.
/// `before` is the character in front of it, if any was there.
bool TakeUpToDeclaration(std::string_view& content, char& before) {
  for (std::size_t at = content.find('!'); at != kNone; at = content.find('!', at + 1)) {
    if (at == 0 || content[at - 1] != '<') continue;
    if (at != 1) before = content[at - 2];
    content.remove_prefix(at + 1);
    return true;
  }
  return false;
}

/// Takes a construct from the front of `content`. False when none that starts like this is there.
/// Without an end it is all that there is.
bool Take(std::string_view start, std::string_view end, std::string_view& content) {
  if (!content.starts_with(start)) return false;
  const std::size_t place = content.find(end, start.size());
  content = place == kNone ? std::string_view() : content.substr(place + end.size());
  return true;
}

/// Takes a document type that is nothing but a name and an identifier: one that can hold no '>'.
bool TakeDocumentType(std::string_view& content) {
  const std::string_view type = content.substr(0, content.find('>'));
  if (!type.starts_with("<!DOCTYPE") || type.find_first_of("['") != kNone) return false;
  if (std::count(type.begin(), type.end(), '"') % 2 != 0) return false;
  return Take(type, ">", content);
}

/// The document from its root on, or from what may stand in front of it and is not looked into.
std::string_view FromRoot(std::string_view document) {
  while (true) {
    document.remove_prefix(std::min(document.find('<'), document.size()));
    const bool is_taken =
        Take("<?", "?>", document) || Take("<!--", "-->", document) || TakeDocumentType(document);
    if (!is_taken) return document;
  }
}

}  // namespace

bool HasBlankPieces(std::string_view document) {
  std::string_view content = FromRoot(document);
  if (HasInstruction(content)) return true;
  char before = '>';
  while (TakeUpToDeclaration(content, before)) {
    if (Take("[CDATA[", "]]>", content)) {
      if (IsBlank(before) || (!content.empty() && IsBlank(content.front()))) return true;
    } else if (Take("--", "-->", content)) {
      // In front of an element it stands among elements.
      if (!IsElement(SkipSpace(content))) return true;
    } else {
      return true;
    }
    before = '>';
  }
  return false;
}

}  // namespace dom
