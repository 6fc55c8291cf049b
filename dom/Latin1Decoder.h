#pragma once

#include <span>

namespace dom {

/// Turns the bytes of a document into ISO-8859-1, in place, and returns the part of them that is
/// used then: without a byte order mark, and never longer. Which encoding they are in, and what
/// becomes of bad sequences, is said at DOMImplementation::createDocument.
std::span<char> DecodeToLatin1(std::span<char> bytes);

}  // namespace dom
