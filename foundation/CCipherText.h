#pragma once

#include <string>
#include <string_view>

#include "foundation/CText.h"

namespace zaf {

/// A text that can be enciphered to printable characters and back: a mark of 4 characters, then in
/// lower-case hexadecimal the text, padded with PKCS#7 (RFC 5652), under Blowfish in CBC mode. The
/// keys are part of the program, so this only prevents a text from being read by accident. The same
/// text always gives the same characters.
class CCipherText : public CText {
 public:
  using CText::CText;
  using CText::operator=;

  /// Replaces the text by its enciphered form; an empty text stays empty.
  void Encipher();

  /// Sets `enciphered` to the enciphered form of `text`.
  static void Encipher(std::string_view text, std::string& enciphered);

  /// Replaces an enciphered text by the clear one. A text without the mark, or one that does not
  /// decipher, stays as it is.
  void Decipher();
};

}  // namespace zaf
