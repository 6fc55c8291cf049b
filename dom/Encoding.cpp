#include "dom/Encoding.h"

#include <algorithm>

#include "dom/CharacterClasses.h"

namespace dom {
namespace {

struct EncodingName {
  std::string_view lower_case;
  Encoding encoding;
};

constexpr EncodingName kNames[] = {
    {"iso-8859-1", Encoding::kLatin1}, {"latin1", Encoding::kLatin1},
    {"us-ascii", Encoding::kAscii},    {"utf-8", Encoding::kUtf8},
    {"utf-16", Encoding::kUtf16},
};

constexpr std::string_view kBigEndianMark = "\xFE\xFF";
constexpr std::string_view kLittleEndianMark = "\xFF\xFE";
constexpr char kIllFormed = '\xFF';

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// The least code point for a sequence of that many bytes; lower ones are overlong.
constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};

Character ReadUtf8(const char* p, const char* end) {
  const auto first = static_cast<unsigned char>(*p);
  if (first < 0x80) return {first, 1};
  const std::uint32_t size = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if (size == 0 || first > 0xF4 || end - p < static_cast<std::ptrdiff_t>(size)) return {0, 0};
  char32_t code = first & (0x7FU >> size);
  for (std::uint32_t i = 1; i < size; ++i) {
    const auto byte = static_cast<unsigned char>(p[i]);
    if ((byte & 0xC0) != 0x80) return {0, 0};
    code = code << 6 | (byte & 0x3F);
  }
  const bool is_surrogate = code >= 0xD800 && code < 0xE000;
  if (code < kLeast[size] || code > 0x10FFFF || is_surrogate) return {0, 0};
  return {code, size};
}

char* WriteUtf8(char32_t code, char* target) {
  const auto write = [&](char32_t byte) { *target++ = static_cast<char>(byte); };
  if (code < 0x80) {
    write(code);
    return target;
  }
  if (code < 0x800) {
    write(0xC0 | code >> 6);
  } else {
    if (code < 0x10000) {
      write(0xE0 | code >> 12);
    } else {
      write(0xF0 | code >> 18);
      write(0x80 | (code >> 12 & 0x3F));
    }
    write(0x80 | (code >> 6 & 0x3F));
  }
  write(0x80 | (code & 0x3F));
  return target;
}

}  // namespace

std::optional<Encoding> FindEncoding(std::string_view name) {
  for (const EncodingName& row : kNames)
    if (std::ranges::equal(name, row.lower_case, {}, Lower)) return row.encoding;
  return std::nullopt;
}

Character ReadCharacter(const char* p, const char* end, Encoding encoding) {
  if (encoding == Encoding::kLatin1) return {static_cast<unsigned char>(*p), 1};
  if (encoding == Encoding::kAscii && IsHigh(*p)) return {0, 0};
  return ReadUtf8(p, end);
}

bool HasUtf16Mark(std::string_view bytes) {
  return bytes.starts_with(kBigEndianMark) || bytes.starts_with(kLittleEndianMark);
}

char* WriteUtf16AsUtf8(std::string_view bytes, char* target) {
  const std::size_t high = bytes.starts_with(kBigEndianMark) ? 0 : 1;
  const auto byte_at = [&](std::size_t at) -> char32_t {
    return static_cast<unsigned char>(bytes[at]);
  };
  const auto unit_at = [&](std::size_t at) {
    return byte_at(at + high) << 8 | byte_at(at + 1 - high);
  };
  std::size_t at = 2;
  while (bytes.size() - at >= 2) {
    char32_t code = unit_at(at);
    at += 2;
    if (code >= 0xD800 && code < 0xE000) {
      const char32_t low = bytes.size() - at >= 2 ? unit_at(at) : 0;
      if (code >= 0xDC00 || low < 0xDC00 || low >= 0xE000) {
        *target++ = kIllFormed;
        return target;
      }
      at += 2;
      code = 0x10000 + ((code - 0xD800) << 10 | (low - 0xDC00));
    }
    target = WriteUtf8(code, target);
  }
  if (at != bytes.size()) *target++ = kIllFormed;
  return target;
}

}  // namespace dom
