#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/FourCharCode.h"

namespace zaf {

class TByteAccount;

/// How an output differs from its input.
enum class LossCode : std::uint8_t {
  kSectionDropped,     ///< Read, but without XML form, and not at its default.
  kSectionUnknown,     ///< A code without a meaning in the class.
  kSectionRepeated,    ///< Replaced by a later section of the same record.
  kSectionMalformed,   ///< Read only in part, where that does not fail the file.
  kBytesUnreferenced,  ///< Covered by no header, map or section, and not all NUL.
  kRecordDropped,      ///< An item of a list that is not converted.
  kTextCut,            ///< A text longer than its field.
  kValueUnknown,       ///< Outside its vocabulary, and written as another value.
  kCharacterDropped,   ///< Not a character of XML.
  kCharacterReplaced,  ///< Not a character of ISO-8859-1.
  kLineEndChanged,     ///< A CR, which is read back as a line feed. A note, not a loss.
  kNodeIgnored,        ///< A node of a document that nothing reads.
  kNotReadable,        ///< Valid to write, but refused by the reader.
  kNotRestored,        ///< Different when read back, without another loss that explains it.
};

/// One loss and its place. Members that do not apply are empty, kNoCode or 0.
struct TLoss {
  LossCode code;
  /// What was found, expected and done; `%` marks the place of `detail`. A constant in ASCII,
  /// without quotes, backslashes and control characters.
  std::string_view sentence;
  std::string detail;
  std::string action;              ///< Name of the action.
  FourCharCode section = kNoCode;  ///< Of a legacy file, as are the offset and length.
  bool has_range = false;          ///< Whether offset and length apply.
  std::uint64_t offset = 0;        ///< In bytes.
  std::uint64_t length = 0;        ///< In bytes.
  std::uint32_t line = 0;          ///< Of a document, from 1, as is the column.
  std::uint32_t column = 0;

  /// The sentence with its detail.
  [[nodiscard]] std::string GetText() const {
    std::string text(sentence);
    if (const std::size_t mark = text.find('%'); mark != std::string::npos)
      text.replace(mark, 1, detail);
    return text;
  }
};

/// Receives each loss of a conversion as it occurs.
class TLossObserver {
 public:
  virtual void OnLoss(TLoss&& loss) = 0;
  /// The account to keep of the bytes of a legacy file; null for none. Always the same.
  virtual TByteAccount* GetAccount() { return nullptr; }

 protected:
  ~TLossObserver() = default;
};

}  // namespace zaf
