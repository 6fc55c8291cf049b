#include "fields/AssignWithLineFeeds.h"

#include <algorithm>
#include <cstdint>

namespace zaf {
namespace {

/// Calls `visit` with each piece of the text that ends with a CR, then with the rest.
template <class Visit>
void ForEachPiece(std::string_view text, Visit visit) {
  for (std::size_t end = text.find('\r'); end != std::string_view::npos; end = text.find('\r')) {
    visit(text.substr(0, end + 1));
    text.remove_prefix(end + 1);
  }
  visit(text);
}

}  // namespace

bool AssignWithLineFeeds(std::string_view characters, CText& text) {
  if (characters.empty()) {
    text.Clear();
    return true;
  }
  std::uint64_t pieces = 0;
  ForEachPiece(characters, [&](std::string_view) { ++pieces; });
  // One LF per piece but the last, and the NUL.
  const std::uint64_t size = characters.size() + pieces;
  if (size >= kNoIndex) return false;
  const auto length = static_cast<std::uint32_t>(size);
  if (text.CData::Set(nullptr, length).length != length) return false;  // Sets the size only.
  char* target = text.GetData();
  ForEachPiece(characters, [&](std::string_view piece) {
    target = std::copy(piece.begin(), piece.end(), target);
    *target++ = '\n';
  });
  target[-1] = '\0';
  return true;
}

}  // namespace zaf
