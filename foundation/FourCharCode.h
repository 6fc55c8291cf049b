#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zaf {

/// A name of four characters held as a number: the first character is the most significant byte.
/// Action types, section codes and data-source kinds are such codes.
enum class FourCharCode : std::uint32_t {};

/// Denotes the absence of a code.
inline constexpr FourCharCode kNoCode{};

/// The code spelled by a literal of exactly four characters.
consteval FourCharCode Code(const char (&text)[5]) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(text[i]);
  return FourCharCode{value};
}

/// The code of the first four bytes of `text`; missing ones are NUL, further ones are ignored.
constexpr FourCharCode CodeOfText(std::string_view text) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i)
    value = value << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
  return FourCharCode{value};
}

/// The four characters of a code, not terminated.
constexpr std::array<char, 4> Characters(FourCharCode code) {
  const auto value = static_cast<std::uint32_t>(code);
  return {static_cast<char>(value >> 24 & 0xFF), static_cast<char>(value >> 16 & 0xFF),
          static_cast<char>(value >> 8 & 0xFF), static_cast<char>(value & 0xFF)};
}

/// The four characters of a code as a text.
inline std::string TextOf(FourCharCode code) { return {Characters(code).data(), 4}; }

}  // namespace zaf
