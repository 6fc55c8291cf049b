#pragma once

#include <cstdint>
#include <string>

#include "foundation/FourCharCode.h"

namespace zaf {

class TByteAccount;
struct TProperty;

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
  std::string text;                ///< One sentence: what was found, expected and done.
  std::string action;              ///< Name of the action.
  FourCharCode section = kNoCode;  ///< Of a legacy file, as are the offset and length.
  bool has_range = false;          ///< Whether offset and length apply.
  std::uint64_t offset = 0;        ///< In bytes.
  std::uint64_t length = 0;        ///< In bytes.
  std::uint32_t line = 0;          ///< Of a document, from 1, as is the column.
  std::uint32_t column = 0;
};

/// What a range of a legacy file is read as.
enum class AccessKind : std::uint8_t {
  kHeader,   ///< The record header of the file or of an action.
  kMap,      ///< Its section map.
  kSection,  ///< A section in the map, including that of a header.
  kBeyond,   ///< Bytes after a section that are read as if they were part of it.
  kField,    ///< The same section, read by a row. Other sections are read by hand or skipped.
};

/// A range of a legacy file that is being read. It may extend past the end of the file, and overlap
/// others.
struct TAccess {
  AccessKind kind;
  std::uint64_t offset;            ///< From the start of the file, in bytes.
  std::uint64_t length;            ///< In bytes.
  FourCharCode section = kNoCode;  ///< Code of the section.
  const TProperty* row = nullptr;  ///< The row of a kField, a constant.
  std::string_view action = {};    ///< Name of the action; empty: the application itself.
  bool is_in_action = false;       ///< Whether the range is of the record of an action.
};

/// Receives each loss of a conversion as it occurs and, while a legacy file is read, each range
/// that is read, in reading order. The records of an application are read one after another: the
/// header, the map, then the sections of each; the sections of an action come between those of the
/// application.
class TLossObserver {
 public:
  virtual void OnLoss(const TLoss& loss) = 0;
  virtual void OnAccess(const TAccess&) {}
  /// The account of the file's bytes, which records more than accesses; null if there is none.
  virtual TByteAccount* GetAccount() { return nullptr; }

 protected:
  ~TLossObserver() = default;
};

}  // namespace zaf
