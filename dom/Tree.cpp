#include "dom/Tree.h"

#include <algorithm>

#include "dom/PagePool.h"

namespace dom {
namespace {

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

/// Whether `c` between `before` and `after` (NUL: the end) has to become a blank.
bool IsBarred(char before, char c, char after, TextRule rule) {
  switch (rule) {
    case TextRule::kComment:
      return c == '-' && (before == '-' || after == '\0');
    case TextRule::kInstruction:
      return c == '?' && after == '>';
    case TextRule::kIdentifier:
      return c == '"';
    case TextRule::kAttribute:
      break;
  }
  return false;
}

}  // namespace

pugi::xml_node GetHiddenPlace(const pugi::xml_node& node) {
  pugi::xml_node document = node.root();
  pugi::xml_node places = document.first_child();
  if (!IsHidden(places)) places = document.prepend_child(pugi::node_element);
  const pugi::xml_node place = places.first_child();
  return place && !place.first_child() ? place : places.prepend_child(pugi::node_element);
}

void TerminatedName::Copy(std::string_view prefix, std::string_view name) {
  const std::size_t length = prefix.size() + name.size();
  if (length >= short_name_.size()) {
    char* const long_name = static_cast<char*>(Allocate(length + 1));
    if (!long_name) {
      PagePool::CountFailure();
      *name_ = '\0';
      return;
    }
    name_ = long_name;
  }
  *std::copy(name.begin(), name.end(), std::copy(prefix.begin(), prefix.end(), name_)) = '\0';
}

void MakeLegal(char* text, std::size_t length, TextRule rule) {
  char* const end = std::remove_if(text, text + length, IsControl);
  *end = '\0';
  char before = '\0';
  for (char* p = text; p != end; ++p) {
    if (IsBarred(before, *p, p[1], rule)) *p = ' ';
    before = *p;
  }
}

}  // namespace dom
