#include "dom/BlankPieces.h"

#include <cstddef>

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

/// The document from its first element on: what stands in front is no part of an element.
std::string_view FromRoot(std::string_view document) {
  std::size_t root = document.find('<');
  while (root != kNone && !IsElement(document.substr(root))) root = document.find('<', root + 1);
  return root == kNone ? std::string_view() : document.substr(root);
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

/// Takes a construct from `content`, which begins behind its `<!`. False when it is not one that
/// starts like this. Without an end it is all that there is.
bool Take(std::string_view start, std::string_view end, std::string_view& content) {
  if (!content.starts_with(start)) return false;
  const std::size_t place = content.find(end, start.size());
  content = place == kNone ? std::string_view() : content.substr(place + end.size());
  return true;
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
      const std::size_t next = content.find_first_not_of(kWhiteSpace);
      if (next == kNone || !IsElement(content.substr(next))) return true;
    } else {
      return true;
    }
    before = '>';
  }
  return false;
}

}  // namespace dom
