#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "fields/TLossReporter.h"
#include "foundation/CTextPtrArray.h"
#include "foundation/FourCharCode.h"
#include "foundation/Status.h"
#include "foundation/TByteReader.h"
#include "foundation/TDataFile.h"

namespace zaf {

class TRecordNumbers;

/// The result of converting an older record.
enum class Conversion : std::uint8_t {
  kDropped,  ///< It is not taken.
  kWhole,
  kCut,      ///< A text was longer than its field.
  kEmptied,  ///< The record stays all zero.
};

/// Converts older records of list sections. An action implements it for its lists.
class TRecordConverter {
 public:
  /// Fills `record`, which is all zero, from an older record of the list section `code`.
  virtual Conversion ConvertLegacyRecord(FourCharCode code, ByteView legacy_record,
                                         std::span<std::byte> record) = 0;
  /// Finishes a record of the list section `code`, of the current size: converts its numbers
  /// to the host's byte order.
  virtual void FixRecord(FourCharCode code, const TRecordNumbers& numbers, void* record);

 protected:
  ~TRecordConverter() = default;
};

/// An unread section of a legacy file: its code and its place in the file. Owns nothing; the file
/// and the converter outlive it. The read operations return the data
/// file's status and leave the result unchanged if they fail.
struct TLegacySection {
  TDataFile* file = nullptr;              ///< Null: every read returns kNoFile.
  FourCharCode code = kNoCode;            ///< Identifies the property.
  std::uint32_t offset = 0;               ///< From the start of the file, in bytes.
  std::uint32_t length = 0;               ///< In bytes.
  TRecordConverter* converter = nullptr;  ///< Null: older records of lists are dropped.
  TLossReporter* losses = nullptr;        ///< Null: there is no observer.

  /// The section's bytes, valid until another section is read or the file is closed.
  Status View(ByteView& bytes) const {
    return file == nullptr ? Status::kNoFile : file->ViewBlock(code, offset, length, bytes);
  }
  /// The same for a text, without one final NUL.
  Status View(std::string_view& text) const {
    return file == nullptr ? Status::kNoFile : file->ViewText(code, offset, length, text);
  }
  /// A 32-bit number; reads 4 bytes regardless of the section's length.
  Status Read(std::int32_t& value) const {
    return file == nullptr ? Status::kNoFile : file->ReadInteger(code, offset, length, value);
  }
  /// Appends the texts of a counted list to `texts`.
  Status Read(CTextPtrArray& texts) const {
    return file == nullptr ? Status::kNoFile : file->ReadTextList(code, offset, length, texts);
  }

  /// Reports to an observer that only the first `used` bytes are read; `used` may exceed the
  /// length.
  void ReportUnread(std::uint64_t used) const {
    if (losses != nullptr && used != length) [[unlikely]]
      losses->ReportUnread(*this, used);
  }

  /// Notes for an observer that the section was read by hand into the field of this code, and
  /// reports an earlier section that it replaces, unless the field has the same value.
  void NoteField(FourCharCode field, bool has_same_value) const {
    if (losses != nullptr) [[unlikely]]
      losses->NoteField(field, has_same_value);
  }

  /// The observer's account of the file's bytes; null if it keeps no account.
  [[nodiscard]] TByteAccount* GetAccount() const {
    return losses == nullptr ? nullptr : losses->GetAccount();
  }
};

}  // namespace zaf
