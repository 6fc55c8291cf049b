#include "foundation/CCipherText.h"

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <span>
#include <string_view>

#include "foundation/Cipher.h"
#include "foundation/Heap.h"

namespace zaf {
namespace {

constexpr std::string_view kMark = "ZC1:";
constexpr std::string_view kKeyText = "Zaf2Xml keeps user names and passwords unread";
constexpr std::string_view kInitial = "Zaf2Text";
static_assert(kMark.size() == 4 && kKeyText.size() == 45 && kInitial.size() == kCipherBlockSize);

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

/// The one cipher of all texts: setting up its key costs far more than a text does.
class TTextCipher {
 public:
  bool Encipher(char* bytes, std::size_t size) {
    const std::lock_guard lock(mutex_);
    return cipher_.Encipher(kInitial, WritableBytes(bytes, size));
  }
  bool Decipher(char* bytes, std::size_t size) {
    const std::lock_guard lock(mutex_);
    return cipher_.Decipher(kInitial, WritableBytes(bytes, size));
  }

 private:
  std::mutex mutex_;
  TCipher cipher_{kKeyText};
};

TTextCipher text_cipher;

/// The bytes that pairs of lower-case hexadecimal digits spell; false when they spell none.
bool DecodeHex(std::string_view digits, heap::TPooledString& bytes) {
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

/// Removes PKCS#7 padding; false when the end is none.
bool RemovePadding(heap::TPooledString& bytes) {
  if (bytes.empty()) return false;
  const char last = bytes.back();
  const auto count = static_cast<unsigned char>(last);
  if (count == 0 || count > kCipherBlockSize || count > bytes.size()) return false;
  if (std::any_of(bytes.end() - count, bytes.end(), [=](char c) { return c != last; }))
    return false;
  bytes.resize(bytes.size() - count);
  return true;
}

}  // namespace

bool CCipherText::Encipher() {
  if (IsEmpty()) return true;
  heap::TPooledString enciphered;
  if (!Encipher(View(), enciphered)) return false;
  Assign(std::string_view(enciphered));
  return true;
}

bool CCipherText::Encipher(std::string_view text, heap::TPooledString& enciphered) {
  enciphered.clear();
  if (text.empty()) return true;
  const std::size_t padding = kCipherBlockSize - text.size() % kCipherBlockSize;
  const std::size_t size = text.size() + padding;
  enciphered.reserve(kMark.size() + 2 * size);
  // The bytes stand in the second half of the place for their digits, so that none is overwritten
  // before it is read.
  enciphered.append(kMark).append(size, '\0');
  enciphered.append(text).append(padding, static_cast<char>(padding));
  char* digit = enciphered.data() + kMark.size();
  char* const bytes = digit + size;
  if (!text_cipher.Encipher(bytes, size)) return false;
  for (std::size_t i = 0; i < size; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    *digit++ = kDigits[byte >> 4];
    *digit++ = kDigits[byte & 0xF];
  }
  return true;
}

void CCipherText::Decipher() {
  const std::string_view text = View();
  heap::TPooledString bytes;
  if (!text.starts_with(kMark) || !DecodeHex(text.substr(kMark.size()), bytes)) return;
  if (!text_cipher.Decipher(bytes.data(), bytes.size()) || !RemovePadding(bytes)) return;
  Assign(std::string_view(bytes));
}

}  // namespace zaf
