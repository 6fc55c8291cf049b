#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace dom {

/// The encodings that the parser supports.
enum class Encoding : std::uint8_t { kLatin1, kAscii, kUtf8, kUtf16 };

/// The encoding with this name in an XML declaration, case ignored.
std::optional<Encoding> FindEncoding(std::string_view name);

/// A character and the number of its bytes.
struct Character {
  char32_t code;
  std::uint32_t size;  ///< 0: the bytes are ill-formed.
};

/// Decodes the character at `p`, which is before `end`. Well-formed UTF-8 is defined by The Unicode
/// Standard, table 3-7. Not for UTF-16.
Character ReadCharacter(const char* p, const char* end, Encoding encoding);

/// Whether the bytes begin with a UTF-16 byte order mark.
bool HasUtf16Mark(std::string_view bytes);
/// Converts UTF-16 that begins with a mark to UTF-8 without the mark; needs at most three bytes for
/// two. Returns the new end. At the first ill-formed unit a byte that is never valid in UTF-8 is
/// written and the conversion ends.
char* WriteUtf16AsUtf8(std::string_view bytes, char* target);

}  // namespace dom
