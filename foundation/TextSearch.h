#pragma once

#include <cstddef>
#include <string_view>

#include "foundation/CaseFolding.h"

namespace zaf {

/// Returns the position of the first match of `pattern` in `text` at or after `start`; npos without
/// one. An empty pattern matches at `start`, if that is not after the end. Takes time linear in
/// both sizes, whatever the texts contain, and no memory.
std::size_t FindForward(std::string_view text, std::string_view pattern, std::size_t start,
                        CaseSensitivity sensitivity);

/// Returns the position of the last exact match that ends at or before `end`; npos without one.
/// Takes the same time.
std::size_t FindBackward(std::string_view text, std::string_view pattern, std::size_t end);

}  // namespace zaf
