#pragma once

#include <string_view>

namespace zaf {

/// Of the program; the build sets it.
inline constexpr std::string_view kVersion = ZAF_VERSION;

}  // namespace zaf
