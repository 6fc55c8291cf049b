#pragma once

#include <string_view>

#include "foundation/CText.h"
#include "foundation/Heap.h"

namespace zaf {

/// A text that can be enciphered to printable characters and back: a mark of 4 characters, then in
/// lower-case hexadecimal the text, padded as PKCS#7 (RFC 5652) has it, under Blowfish in CBC mode.
/// The keys are part of the program, so this keeps a text from being read by chance and no more.
/// The same text always gives the same characters.
class CCipherText : public CText {
 public:
  using CText::CText;
  using CText::operator=;

  /// Turns the text into its enciphered form; an empty text stays empty. False, and the text
  /// unchanged, when the cipher cannot be had.
  bool Encipher();

  /// Sets `enciphered` to the enciphered form of `text`. False when the cipher cannot be had.
  [[nodiscard]] static bool Encipher(std::string_view text, heap::TPooledString& enciphered);

  /// Turns an enciphered text back. A text without the mark, or one that cannot be deciphered,
  /// stays as it is.
  void Decipher();
};

}  // namespace zaf
