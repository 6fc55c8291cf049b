#pragma once

#include <string_view>

namespace dom {

/// What white space is to XML.
inline constexpr std::string_view kWhiteSpace = " \t\r\n";

}  // namespace dom
