#pragma once

/// The character classes of XML 1.0 (fifth edition); numbers in brackets are those of its
/// productions.
namespace dom {

/// [2] Char.
constexpr bool IsCharacter(char32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code < 0xD800 || (code >= 0xE000 && code <= 0xFFFD) ||
         (code >= 0x10000 && code <= 0x10FFFF);
}

/// [3] S.
constexpr bool IsSpace(char c) {
  return static_cast<unsigned char>(c) <= ' ' && (c == ' ' || c == '\n' || c == '\t' || c == '\r');
}

constexpr bool IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
constexpr bool IsAsciiDigit(char c) { return c >= '0' && c <= '9'; }
/// Whether the character is not ASCII.
constexpr bool IsHigh(char c) { return (static_cast<unsigned char>(c) & 0x80) != 0; }

/// [4] NameStartChar.
bool IsNameStart(char32_t code);
/// [4a] NameChar.
bool IsNameCharacter(char32_t code);
/// [13] PubidChar.
bool IsPublicIdCharacter(char c);

}  // namespace dom
