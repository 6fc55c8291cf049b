#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "foundation/CText.h"
#include "foundation/CTextPtrArray.h"
#include "foundation/FourCharCode.h"
#include "foundation/Status.h"
#include "foundation/TByteReader.h"
#include "foundation/TDataFile.h"

namespace zaf {

/// Converts records of older versions of a list section. An action implements it for its lists.
class TRecordConverter {
 public:
  /// Fills `record`, which is all zero, from an older record of the list section `code`. Returns
  /// whether there is a record to keep.
  virtual bool ConvertLegacyRecord(FourCharCode code, ByteView legacy_record,
                                   std::span<std::byte> record) = 0;

 protected:
  ~TRecordConverter() = default;
};

/// A section of a legacy file that was not read yet: its place and its purpose. It owns nothing;
/// the file and the converter outlive it. The read operations return the data file's status and
/// leave the result unchanged when they fail.
struct TLegacySection {
  TDataFile* file = nullptr;              ///< Null: every read returns kNoFile.
  FourCharCode code = kNoCode;            ///< Which property the section holds.
  std::uint32_t offset = 0;               ///< From the start of the file, in bytes.
  std::uint32_t length = 0;               ///< In bytes.
  TRecordConverter* converter = nullptr;  ///< For older records of a list; null: they are dropped.

  /// The section's bytes, in place where possible, else read into `scratch`. Valid until the file
  /// is closed or `scratch` changes.
  Status View(CData& scratch, ByteView& bytes) const {
    return file == nullptr ? Status::kNoFile
                           : file->ViewBlock(code, offset, length, scratch, bytes);
  }
  /// The same for a text. One final NUL is not part of it.
  Status View(CText& scratch, std::string_view& text) const {
    return file == nullptr ? Status::kNoFile : file->ViewText(code, offset, length, scratch, text);
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
