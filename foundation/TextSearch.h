#pragma once

#include <cstddef>
#include <string_view>

#include "foundation/CaseFolding.h"

namespace zaf {

/// Where `pattern` begins in `text`, at `start` or behind it; npos when nowhere. An empty pattern
/// is found at `start`, if that is not behind the end. Takes time linear in what it passes and in
/// the pattern, whatever they contain, and no memory.
std::size_t FindForward(std::string_view text, std::string_view pattern, std::size_t start,
                        CaseSensitivity sensitivity);

/// Where the last exact match begins that ends at `end` or before it. Costs the same.
std::size_t FindBackward(std::string_view text, std::string_view pattern, std::size_t end);

}  // namespace zaf
