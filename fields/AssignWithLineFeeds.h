#pragma once

#include <string_view>

#include "foundation/CText.h"

namespace zaf {

/// Assigns `characters` with an LF inserted after every CR, even one already followed by LF. They
/// must not alias `text`. False, with `text` unchanged, when memory is insufficient or the result
/// would exceed the maximum size of a text.
bool AssignWithLineFeeds(std::string_view characters, CText& text);

}  // namespace zaf
