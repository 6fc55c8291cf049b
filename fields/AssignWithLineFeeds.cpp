#include "fields/AssignWithLineFeeds.h"

#include <bit>
#include <cstdint>
#include <cstring>

#include "dom/Blocks.h"

namespace zaf {
namespace {

std::uint64_t CountReturns(std::string_view characters) {
  // As many as a byte can count: then the compiler counts by blocks.
  constexpr std::size_t kPiece = 240;
  std::uint64_t count = 0;
  while (!characters.empty()) {
    const std::string_view piece = characters.substr(0, kPiece);
    std::uint8_t in_piece = 0;
    for (const char c : piece) in_piece = static_cast<std::uint8_t>(in_piece + (c == '\r'));
    count += in_piece;
    characters.remove_prefix(piece.size());
  }
  return count;
}

/// Copies the characters with their line feeds to `target`, where there is room for all of them.
void CopyWithLineFeeds(std::string_view characters, char* target) {
#if ZAF2XML_SSE2
  // What is copied behind a return is written over: there is room for it, as there are characters.
  while (characters.size() >= dom::kBlock) {
    const __m128i block = dom::LoadBlock(characters.data(), dom::kBlock);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target), block);
    const unsigned returns = dom::FindInBlock(block, '\r');
    const bool has_return = returns != 0;
    const auto count = has_return ? static_cast<std::size_t>(std::countr_zero(returns)) + 1
                                  : std::size_t{dom::kBlock};
    target += count;
    characters.remove_prefix(count);
    if (has_return) *target++ = '\n';
  }
#endif
  for (const char c : characters) {
    *target++ = c;
    if (c == '\r') *target++ = '\n';
  }
}

}  // namespace

bool AssignWithLineFeeds(std::string_view characters, CText& text) {
  if (characters.empty()) {
    text.Clear();
    return true;
  }
  const std::uint64_t returns = CountReturns(characters);
  const std::uint64_t size = characters.size() + returns + 1;
  if (size >= kNoIndex) return false;
  // Without bytes only the room is made.
  const auto length = static_cast<std::uint32_t>(size);
  if (text.CData::Set(nullptr, length).length != length) return false;
  if (returns == 0)
    std::memcpy(text.GetData(), characters.data(), characters.size());
  else
    CopyWithLineFeeds(characters, text.GetData());
  text.GetData()[length - 1] = '\0';
  return true;
}

}  // namespace zaf
