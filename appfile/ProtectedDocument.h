#pragma once

#include <cstddef>
#include <span>

#include "dom/dom.h"
#include "foundation/Status.h"

namespace zaf {

/// The first line of a protected document, without its line end.
inline constexpr std::string_view kProtectedLine = "<?zanfo protected ?>";

/// Appends a document in its protected form: the line, then, enciphered, a 16-byte digest and the
/// text, padded with line feeds to a multiple of 8 bytes. The key is part of the program, so this
/// only prevents a document from being read by accident. The same document always gives the same
/// bytes. kFailure when memory runs out.
Status WriteProtected(const dom::Document& document, dom::OutputBuffer& output);

/// Deciphers `bytes`, which follow the first line, in place and sets `text` to the part that is the
/// document's text. kMalformed, with `bytes` undefined, for any kind of damage.
Status ReadProtected(std::span<std::byte> bytes, std::span<std::byte>& text);

}  // namespace zaf
