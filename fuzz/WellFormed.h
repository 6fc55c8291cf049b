#pragma once

#include <algorithm>
#include <expat.h>
#include <limits>
#include <memory>
#include <string_view>

namespace zaf::fuzz {

/// Whether a document is well-formed XML 1.0 according to libexpat, declares ISO-8859-1, and has no
/// control characters other than white space.
inline bool IsWellFormed(std::string_view document) {
  const auto is_control = [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
  };
  if (!document.starts_with("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<!DOCTYPE Z") ||
      document.size() > std::numeric_limits<int>::max() ||
      std::ranges::any_of(document, is_control))
    return false;
  const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate(nullptr),
                                                                       XML_ParserFree);
  return XML_Parse(parser.get(), document.data(), static_cast<int>(document.size()), 1) ==
         XML_STATUS_OK;
}

}  // namespace zaf::fuzz
