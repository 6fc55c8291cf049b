#pragma once

#include <string_view>

#include "foundation/CText.h"

namespace zaf {

/// Sets `text`, in which they are not, to a copy of the characters that has a line feed behind each
/// carriage return, also where one stood there. False when memory could not be had, or when the
/// copy would be too long for a text, which is then as it was.
bool AssignWithLineFeeds(std::string_view characters, CText& text);

}  // namespace zaf
