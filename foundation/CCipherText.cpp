#include "foundation/CCipherText.h"

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

constexpr std::string_view kDigits = "0123456789abcdef";

std::span<std::byte> WritableBytes(heap::TPooledString& text) {
  return std::as_writable_bytes(std::span(text.data(), text.size()));
}

/// The one cipher of all texts: setting up its key costs far more than a text does.
class TTextCipher {
 public:
  bool Encipher(heap::TPooledString& bytes) {
    const std::lock_guard lock(mutex_);
    return cipher_.Encipher(kInitial, WritableBytes(bytes));
  }
  bool Decipher(heap::TPooledString& bytes) {
    const std::lock_guard lock(mutex_);
    return cipher_.Decipher(kInitial, WritableBytes(bytes));
  }

 private:
  std::mutex mutex_;
  TCipher cipher_{kKeyText};
};

TTextCipher text_cipher;

/// The bytes that pairs of lower-case hexadecimal digits spell; false when they spell none.
bool DecodeHex(std::string_view digits, heap::TPooledString& bytes) {
  if (digits.size() % 2 != 0) return false;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const std::size_t high = kDigits.find(digits[i]);
    const std::size_t low = kDigits.find(digits[i + 1]);
    if (high == std::string_view::npos || low == std::string_view::npos) return false;
    bytes += static_cast<char>(high << 4 | low);
  }
  return true;
}

/// Removes PKCS#7 padding; false when the end is none.
bool RemovePadding(heap::TPooledString& bytes) {
  if (bytes.empty()) return false;
  const auto count = static_cast<unsigned char>(bytes.back());
  if (count == 0 || count > kCipherBlockSize || count > bytes.size()) return false;
  const heap::TPooledString padding(count, bytes.back());
  if (!bytes.ends_with(padding)) return false;
  bytes.resize(bytes.size() - count);
  return true;
}

}  // namespace

bool CCipherText::Encipher() {
  if (IsEmpty()) return true;
  heap::TPooledString bytes(View());
  const std::size_t padding = kCipherBlockSize - bytes.size() % kCipherBlockSize;
  bytes.append(padding, static_cast<char>(padding));
  if (!text_cipher.Encipher(bytes)) return false;
  heap::TPooledString printable(kMark);
  for (const char c : bytes) {
    printable += kDigits[static_cast<unsigned char>(c) >> 4];
    printable += kDigits[static_cast<unsigned char>(c) & 0xF];
  }
  Assign(std::string_view(printable));
  return true;
}

void CCipherText::Decipher() {
  const std::string_view text = View();
  heap::TPooledString bytes;
  if (!text.starts_with(kMark) || !DecodeHex(text.substr(kMark.size()), bytes)) return;
  if (!text_cipher.Decipher(bytes) || !RemovePadding(bytes)) return;
  Assign(std::string_view(bytes));
}

}  // namespace zaf
