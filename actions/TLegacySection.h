#pragma once

#include <cstdint>
#include <string_view>

#include "foundation/CTextPtrArray.h"
#include "foundation/FourCharCode.h"
#include "foundation/Status.h"
#include "foundation/TByteReader.h"
#include "foundation/TDataFile.h"

namespace zaf {

class TQuerySpecification;

/// A section of a legacy file that was not read yet: its place and its purpose. It owns nothing;
/// the file and the owner outlive it. The read operations return the data file's status and leave
/// the result unchanged when they fail.
struct TLegacySection {
  TDataFile* file = nullptr;             ///< Null: every read returns kNoFile.
  FourCharCode code = kNoCode;           ///< Which property the section holds.
  std::uint32_t offset = 0;              ///< From the start of the file, in bytes.
  std::uint32_t length = 0;              ///< In bytes.
  TQuerySpecification* owner = nullptr;  ///< Upgrades the records of a list; null for none.

  /// The section's bytes, valid until another section is read or the file is closed.
  Status View(ByteView& bytes) const {
    return file == nullptr ? Status::kNoFile : file->ViewBlock(code, offset, length, bytes);
  }
  /// The same for a text. One final NUL is not part of it.
  Status View(std::string_view& text) const {
    return file == nullptr ? Status::kNoFile : file->ViewText(code, offset, length, text);
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
