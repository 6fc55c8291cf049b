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

class TRecordWords;

/// Converts records of older versions of a list section. An action implements it for its lists.
class TRecordConverter {
 public:
  /// Fills `record`, which is all zero, from an older record of the list section `code`. Returns
  /// whether there is a record to keep.
  virtual bool ConvertLegacyRecord(FourCharCode code, ByteView legacy_record,
                                   std::span<std::byte> record) = 0;
  /// Finishes a record of the list section `code`, of the current size: turns its numbers from the
  /// file's byte order into the machine's.
  virtual void FixRecord(FourCharCode code, const TRecordWords& words, void* record);

 protected:
  ~TRecordConverter() = default;
};

/// One section of a legacy file, not read yet: where it lies and what it is for. It owns nothing;
/// the file, which is in memory, and the converter outlive it. The read operations return the data
/// file's status and leave the result as it was when they fail.
struct TLegacySection {
  TDataFile* file = nullptr;              ///< Null: every read returns kNoFile.
  FourCharCode code = kNoCode;            ///< Which property the section holds.
  std::uint32_t offset = 0;               ///< From the start of the file, in bytes.
  std::uint32_t length = 0;               ///< In bytes.
  TRecordConverter* converter = nullptr;  ///< For older records of a list; null: they are dropped.

  /// The section's bytes, in place: valid as long as the file stays open.
  Status View(ByteView& bytes) const {
    return file == nullptr ? Status::kNoFile : file->ViewBlock(code, offset, length, bytes);
  }
  /// A text, in place; one final NUL is no part of it.
  Status View(std::string_view& text) const {
    ByteView bytes;
    const Status status = View(bytes);
    if (status == Status::kOk) text = TextOfSection(bytes);
    return status;
  }
  /// A number; it has 4 bytes whatever the section's length says.
  Status Read(std::int32_t& value) const {
    return file == nullptr ? Status::kNoFile : file->ReadInteger(code, offset, length, value);
  }
  /// A counted list of texts, which are appended to `texts`.
  Status Read(CTextPtrArray& texts) const {
    return file == nullptr ? Status::kNoFile : file->ReadTextList(code, offset, length, texts);
  }
};

}  // namespace zaf
