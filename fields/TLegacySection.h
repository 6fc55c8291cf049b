#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "foundation/CTextPtrArray.h"
#include "foundation/FourCharCode.h"
#include "foundation/Status.h"
#include "foundation/TByteReader.h"
#include "foundation/TDataFile.h"

namespace zaf {

/// Converts older records of list sections. An action implements it for its lists.
class TRecordConverter {
 public:
  /// Fills `record`, which is all zero, from an older record of the list section `code`. False if
  /// the record is to be dropped.
  virtual bool ConvertLegacyRecord(FourCharCode code, ByteView legacy_record,
                                   std::span<std::byte> record) = 0;

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
};

}  // namespace zaf
