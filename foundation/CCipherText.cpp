#include "foundation/CCipherText.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>

#include "foundation/Cipher.h"

namespace zaf {
namespace {

constexpr std::string_view kMark = "ZC1:";
constexpr std::string_view kKeyText = "Zaf2Xml keeps user names and passwords unread";
constexpr TCipherBlock kInitialVector{'Z', 'a', 'f', '2', 'T', 'e', 'x', 't'};
static_assert(kMark.size() == 4 && kKeyText.size() == 45);

constexpr char kDigits[] = "0123456789abcdef";
constexpr unsigned kNoDigit = 16;

constexpr unsigned ValueOf(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
  if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a') + 10;
  return kNoDigit;
}

std::span<std::byte> WritableBytes(char* bytes, std::size_t size) {
  return std::as_writable_bytes(std::span(bytes, size));
}

/// The cipher of all texts, keyed when the first of them is transformed.
const TCipher& TextCipher() {
  static const TCipher cipher(kKeyText, kInitialVector);
  return cipher;
}

/// Decodes pairs of lower-case hexadecimal digits; false when `digits` are anything else.
bool DecodeHex(std::string_view digits, std::string& bytes) {
  if (digits.size() % 2 != 0) return false;
  bytes.resize(digits.size() / 2);
  const char* digit = digits.data();
  for (char& byte : bytes) {
    const unsigned high = ValueOf(*digit++);
    const unsigned low = ValueOf(*digit++);
    if (high == kNoDigit || low == kNoDigit) return false;
    byte = static_cast<char>(high << 4 | low);
  }
  return true;
}

/// Removes PKCS#7 padding; false if absent.
bool RemovePadding(std::string& bytes) {
  if (bytes.empty()) return false;
  const char last = bytes.back();
  const auto count = static_cast<unsigned char>(last);
  if (count == 0 || count > kCipherBlockSize || count > bytes.size()) return false;
  if (std::any_of(bytes.end() - count, bytes.end(), [=](char c) { return c != last; }))
    return false;
  bytes.erase(bytes.size() - count);
  return true;
}

}  // namespace

void CCipherText::Encipher() {
  if (IsEmpty()) return;
  std::string enciphered;
  Encipher(View(), enciphered);
  Assign(std::string_view(enciphered));
}

void CCipherText::Encipher(std::string_view text, std::string& enciphered) {
  enciphered.clear();
  if (text.empty()) return;
  const std::size_t padding = kCipherBlockSize - text.size() % kCipherBlockSize;
  const std::size_t size = text.size() + padding;
  enciphered.reserve(kMark.size() + 2 * size);
  // The bytes are in the second half of the space for their digits: each is read before a digit
  // overwrites it.
  enciphered.append(kMark).append(size, '\0');
  enciphered.append(text).append(padding, static_cast<char>(padding));
  char* digit = enciphered.data() + kMark.size();
  char* const bytes = digit + size;
  TextCipher().Encipher(WritableBytes(bytes, size));
  for (std::size_t i = 0; i < size; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    *digit++ = kDigits[byte >> 4];
    *digit++ = kDigits[byte & 0xF];
  }
}

void CCipherText::Decipher() {
  const std::string_view text = View();
  std::string bytes;
  if (!text.starts_with(kMark) || !DecodeHex(text.substr(kMark.size()), bytes)) return;
  if (bytes.size() % kCipherBlockSize != 0) return;
  TextCipher().Decipher(WritableBytes(bytes.data(), bytes.size()));
  if (RemovePadding(bytes)) Assign(std::string_view(bytes));
}

}  // namespace zaf
