#pragma once

#include <cstdint>

namespace dom {

/// Expands the references in a text or attribute value where they stand: nothing grows. There is a
/// NUL behind the text. Returns the new size. Which ones, is said at
/// DOMImplementation::createDocument.
std::uint32_t ExpandReferences(char* text, std::uint32_t size);

}  // namespace dom
