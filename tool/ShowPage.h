#pragma once

#include <string_view>

namespace zaf {

/// The page share/show.html, in which `@DATA@` and `@IMAGE@` are to be replaced.
extern const std::string_view kPage;

}  // namespace zaf
