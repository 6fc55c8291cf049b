#include "dom/Latin1Decoder.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "dom/WhiteSpace.h"

namespace dom {
namespace {

constexpr char kReplacement = '?';

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool EqualsIgnoringCase(std::string_view text, std::string_view lower_case) {
  return std::ranges::equal(text, lower_case, {}, Lower);
}

/// The encoding that an XML declaration at the front names; empty without one.
std::string_view FindDeclaredEncoding(std::string_view text) {
  if (!text.starts_with("<?xml") || SkipSpace(text.substr(5)).size() == text.size() - 5) return {};
  text = text.substr(0, text.find("?>"));
  // Only the version can stand in front of it, and no version contains this word.
  const std::size_t name = text.find("encoding");
  if (name == std::string_view::npos) return {};
  text = SkipSpace(text.substr(name + 8));
  if (!text.starts_with('=')) return {};
  text = SkipSpace(text.substr(1));
  if (!text.starts_with('"') && !text.starts_with('\'')) return {};
  const std::size_t end = text.find(text.front(), 1);
  return end == std::string_view::npos ? std::string_view() : text.substr(1, end - 1);
}

bool IsDeclaredLatin1(std::string_view text) {
  const std::string_view encoding = FindDeclaredEncoding(text);
  return EqualsIgnoringCase(encoding, "iso-8859-1") || EqualsIgnoringCase(encoding, "latin1");
}

/// The first byte above 0x7F.
const char* FindNonAscii(const char* p, const char* end) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  for (; end - p >= 16; p += 16) {
    std::uint64_t halves[2];
    std::memcpy(halves, p, sizeof halves);
    if (((halves[0] | halves[1]) & kHighBits) != 0) break;
  }
  return std::find_if(p, end, [](char c) { return (c & 0x80) != 0; });
}

/// The bytes that can follow a first byte of UTF-8 (The Unicode Standard, table 3-7): how many,
/// and between which bounds the first of them is; the others are from 0x80 to 0xBF. None follow
/// a byte that begins no sequence.
struct Utf8Sequence {
  int following;
  unsigned char first_low = 0x80;
  unsigned char first_high = 0xBF;
};

Utf8Sequence SequenceOf(unsigned char first) {
  if (first < 0xC2 || first > 0xF4) return {0};
  if (first < 0xE0) return {1};
  if (first == 0xE0) return {2, 0xA0};
  if (first == 0xED) return {2, 0x80, 0x9F};
  if (first < 0xF0) return {2};
  if (first == 0xF0) return {3, 0x90};
  if (first == 0xF4) return {3, 0x80, 0x8F};
  return {3};
}

/// Takes a sequence that begins with a byte above 0x7F, or the maximal subpart of one.
char TakeUtf8(const char*& p, const char* end) {
  const auto first = static_cast<unsigned char>(*p++);
  const Utf8Sequence sequence = SequenceOf(first);
  unsigned char low = sequence.first_low;
  unsigned char high = sequence.first_high;
  unsigned char byte = 0;
  for (int i = 0; i < sequence.following; ++i, low = 0x80, high = 0xBF) {
    if (p == end) return kReplacement;
    byte = static_cast<unsigned char>(*p);
    if (byte < low || byte > high) return kReplacement;
    ++p;
  }
  // Only two bytes whose first is 0xC2 or 0xC3 are a character up to 0xFF.
  if (sequence.following != 1 || first > 0xC3) return kReplacement;
  return static_cast<char>((first & 0x03) << 6 | (byte & 0x3F));
}

std::span<char> DecodeUtf8(std::span<char> bytes) {
  const char* p = bytes.data();
  const char* const end = p + bytes.size();
  char* target = bytes.data();
  while (true) {
    const char* const non_ascii = FindNonAscii(p, end);
    const auto length = static_cast<std::size_t>(non_ascii - p);
    if (target != p && length != 0) std::memmove(target, p, length);
    target += length;
    p = non_ascii;
    if (p == end) break;
    do *target++ = TakeUtf8(p, end);
    while (p != end && (*p & 0x80) != 0);
  }
  return bytes.first(static_cast<std::size_t>(target - bytes.data()));
}

enum class ByteOrder { kBigEndian, kLittleEndian };

/// A number of `Size` bytes.
template <std::size_t Size>
std::uint32_t Load(const char* p, ByteOrder order) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < Size; ++i) {
    const std::size_t from = order == ByteOrder::kBigEndian ? i : Size - 1 - i;
    value = value << 8 | static_cast<unsigned char>(p[from]);
  }
  return value;
}

bool IsInBlock(std::uint32_t unit, std::uint32_t first) { return unit >> 10 == first >> 10; }

/// Bytes of UTF-16 or UTF-32, without their mark.
template <std::size_t UnitSize>
std::span<char> DecodeUnits(std::span<char> bytes, std::size_t mark_size, ByteOrder order) {
  constexpr std::uint32_t kHighSurrogates = 0xD800;
  constexpr std::uint32_t kLowSurrogates = 0xDC00;
  const char* p = bytes.data() + mark_size;
  const char* const end = bytes.data() + bytes.size();
  char* target = bytes.data();
  while (static_cast<std::size_t>(end - p) >= UnitSize) {
    const std::uint32_t unit = Load<UnitSize>(p, order);
    p += UnitSize;
    if (UnitSize == 2 && IsInBlock(unit, kHighSurrogates) && end - p >= 2 &&
        IsInBlock(Load<2>(p, order), kLowSurrogates))
      p += 2;
    *target++ = unit <= 0xFF ? static_cast<char>(unit) : kReplacement;
  }
  if (p != end) *target++ = kReplacement;
  return bytes.first(static_cast<std::size_t>(target - bytes.data()));
}

}  // namespace

std::span<char> DecodeToLatin1(std::span<char> bytes) {
  using std::string_view;
  const string_view text(bytes.data(), bytes.size());
  // The marks of UTF-32 first: one of UTF-16 is the beginning of one of them.
  if (text.starts_with(string_view("\0\0\xFE\xFF", 4)))
    return DecodeUnits<4>(bytes, 4, ByteOrder::kBigEndian);
  if (text.starts_with(string_view("\xFF\xFE\0\0", 4)))
    return DecodeUnits<4>(bytes, 4, ByteOrder::kLittleEndian);
  if (text.starts_with("\xFE\xFF")) return DecodeUnits<2>(bytes, 2, ByteOrder::kBigEndian);
  if (text.starts_with("\xFF\xFE")) return DecodeUnits<2>(bytes, 2, ByteOrder::kLittleEndian);
  if (text.starts_with("\xEF\xBB\xBF")) bytes = bytes.subspan(3);
  return IsDeclaredLatin1({bytes.data(), bytes.size()}) ? bytes : DecodeUtf8(bytes);
}

}  // namespace dom
