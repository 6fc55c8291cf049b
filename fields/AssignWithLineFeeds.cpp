#include "fields/AssignWithLineFeeds.h"

#include <algorithm>
#include <cstdint>

namespace zaf {
namespace {

std::size_t CountReturns(std::string_view text) {
  std::size_t count = 0;
  while (!text.empty()) {
    // A count of 8 bits, which compilers vectorise best, cannot overflow in 255 characters.
    const std::string_view part = text.substr(0, 255);
    std::uint8_t in_part = 0;
    for (const char c : part) in_part = static_cast<std::uint8_t>(in_part + (c == '\r' ? 1 : 0));
    count += in_part;
    text.remove_prefix(part.size());
  }
  return count;
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
  for (std::size_t cr = characters.find('\r'); cr != std::string_view::npos;
       cr = characters.find('\r')) {
    target = std::copy_n(characters.data(), cr + 1, target);
    *target++ = '\n';
    characters.remove_prefix(cr + 1);
  }
  *std::copy(characters.begin(), characters.end(), target) = '\0';
  return true;
}

}  // namespace zaf
