#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace dom {

/// Why the parser refuses a document. In the order of the sentences in ParseReport.cpp.
enum class ParseFault : std::uint8_t {
  kNone,
  kSize,
  kEncodingName,
  kEncodingMismatch,
  kIllFormed,
  kCharacter,
  kDeclaration,
  kInstructionTarget,
  kDocumentType,
  kInternalSubset,
  kOutside,
  kNoRoot,
  kSecondRoot,
  kUnfinished,
  kMarkup,
  kName,
  kSpace,
  kEqualSign,
  kQuote,
  kLessThan,
  kRepeatedAttribute,
  kEndTag,
  kComment,
  kCDataEnd,
  kReference,
  kCharacterReference,
  kEntity,
};

/// The results of parsing other than the document.
struct ParseReport {
  ParseFault fault = ParseFault::kNone;
  std::size_t line = 0;    ///< Of the fault, from 1, as are columns. 0 without a fault.
  std::size_t column = 0;  ///< In characters.
  std::size_t offset = 0;  ///< In bytes of the text that was parsed.
  /// The bytes that the document refers to: the text without a byte order mark; a text in UTF-16
  /// is converted to UTF-8, which the document owns.
  std::string_view text = {};
  bool is_utf8 = true;  ///< Whether a character of `text` can have several bytes.
  /// Characters above U+00FF that became `?` in texts and attribute values.
  std::size_t replaced_count = 0;

  /// The fault as an English sentence; empty without a fault.
  [[nodiscard]] std::string_view GetReason() const;
};

}  // namespace dom
