#pragma once

#include <string_view>

namespace zaf {

/// The version of the program; set by the build.
inline constexpr std::string_view kVersion = ZAF_VERSION;

}  // namespace zaf
