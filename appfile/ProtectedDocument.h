#pragma once

#include <cstddef>
#include <span>

#include "dom/dom.h"
#include "foundation/Status.h"

namespace zaf {

/// The first line of a protected document, without its line end.
inline constexpr std::string_view kProtectedLine = "<?zanfo protected ?>";

/// Appends a document in its protected form: the line, then, enciphered, a 16-byte digest and the
/// text, padded with line feeds to a multiple of 8 bytes. The key is part of the program: this
/// keeps a document from being read by chance and no more. The same document always gives the
/// same bytes. kFailure when memory or the cipher cannot be had.
Status WriteProtected(const dom::Document& document, dom::OutputBuffer& output);

/// Deciphers what follows the first line, in place. `text` is then the document's text, a part of
/// `bytes`. kMalformed for damage of any kind.
Status ReadProtected(std::span<std::byte> bytes, std::span<std::byte>& text);

}  // namespace zaf
