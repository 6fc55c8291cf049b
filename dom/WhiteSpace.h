#pragma once

#include <algorithm>
#include <string_view>

namespace dom {

/// What white space is to XML.
inline constexpr std::string_view kWhiteSpace = " \t\r\n";

/// The text without the white space at its front.
inline std::string_view SkipSpace(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
}

}  // namespace dom
