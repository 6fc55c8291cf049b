#include "fields/AssignWithLineFeeds.h"

#include <algorithm>
#include <cstdint>

#include "dom/Blocks.h"

namespace zaf {
namespace {

std::size_t CountReturns(std::string_view text) {
  std::size_t count = 0;
  while (!text.empty()) {
    // A count of 8 bits, which compilers vectorise best, cannot overflow in so few characters.
    const std::string_view part = text.substr(0, 15 * dom::kBlock);
    std::uint8_t in_part = 0;
    for (const char c : part) in_part = static_cast<std::uint8_t>(in_part + (c == '\r' ? 1 : 0));
    count += in_part;
    text.remove_prefix(part.size());
  }
  return count;
}

/// Appends a CR and an LF and returns the end.
char* AppendReturn(char* target) {
  *target++ = '\r';
  *target++ = '\n';
  return target;
}

}  // namespace

bool AssignWithLineFeeds(std::string_view characters, CText& text) {
  if (characters.empty()) {
    text.Clear();
    return true;
  }
  // The characters, an LF for each CR, and the NUL.
  const std::uint64_t size = characters.size() + CountReturns(characters) + 1;
  if (size >= kNoIndex) return false;
  const auto length = static_cast<std::uint32_t>(size);
  if (text.CData::Set(nullptr, length).length != length) return false;  // Sets the size only.
  char* target = text.GetData();
  // Blocks are copied whole, so the last characters leave space for the last block.
  const std::size_t rest = std::min(characters.size(), dom::kBlock);
  std::string_view blocks = characters.substr(0, characters.size() - rest);
  while (!blocks.empty()) {
    target = dom::CopyUpTo<dom::Search::kReturn>(blocks, target);
    if (blocks.empty()) break;
    target = AppendReturn(target);
    blocks.remove_prefix(1);
  }
  for (const char c : characters.substr(characters.size() - rest)) {
    if (c == '\r')
      target = AppendReturn(target);
    else
      *target++ = c;
  }
  *target = '\0';
  return true;
}

}  // namespace zaf
