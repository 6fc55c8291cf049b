#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace dom {

/// The encodings that documents are read in.
enum class Encoding : std::uint8_t { kLatin1, kAscii, kUtf8, kUtf16 };

/// The encoding of that name, case ignored, as XML declarations have it.
std::optional<Encoding> FindEncoding(std::string_view name);

/// A character and the bytes that it takes.
struct Character {
  char32_t code;
  std::uint32_t size;  ///< 0: the bytes are ill-formed.
};

/// The character at `p`, which is before `end`. UTF-8 sequences are the well-formed ones of The
/// Unicode Standard, table 3-7. Not for UTF-16.
Character ReadCharacter(const char* p, const char* end, Encoding encoding);

/// Whether the bytes begin with a mark of UTF-16.
bool HasUtf16Mark(std::string_view bytes);
/// Writes UTF-16 that begins with a mark as UTF-8, without the mark; three bytes for two at most.
/// Returns the new end. A byte that UTF-8 never holds is written for what is ill-formed, and
/// nothing after it.
char* WriteUtf16AsUtf8(std::string_view bytes, char* target);

}  // namespace dom
