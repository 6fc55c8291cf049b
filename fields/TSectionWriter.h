#pragma once

#include <cstdint>

#include "foundation/CText.h"
#include "foundation/CTextPtrArray.h"
#include "foundation/FourCharCode.h"
#include "foundation/Status.h"
#include "foundation/TByteReader.h"
#include "foundation/TDataFile.h"
#include "foundation/TRecordArray.h"

namespace zaf {

class TLossReporter;

/// One entry of a section map, in the host's byte order.
struct TSectionMapEntry {
  FourCharCode code;
  std::uint32_t offset;
  std::uint32_t length;
};

/// Size of a section map entry in a legacy file, in bytes.
inline constexpr std::uint32_t kSectionMapEntrySize = 12;

/// Writes the sections of one legacy record consecutively and builds their map. Refers to the
/// caller's file and offset and advances the offset by every byte written. An operation that fails
/// returns the data file's status and adds nothing to the map.
class TSectionWriter {
 public:
  /// `offset` is that of the next section, from the start of `file`. `losses` must outlive
  /// the writer; null without an observer.
  TSectionWriter(TDataFile& file, std::uint32_t& offset, TLossReporter* losses = nullptr)
      : file_(file), offset_(offset), losses_(losses) {}

  /// The reporter of what a section omits of its field; null without an observer.
  [[nodiscard]] TLossReporter* GetLosses() const { return losses_; }

  /// The text and its NUL.
  Status Write(FourCharCode code, const CText& text);
  Status Write(FourCharCode code, std::int32_t value);
  /// The number of texts, then each text with its NUL.
  Status Write(FourCharCode code, const CTextPtrArray& texts);
  Status Write(FourCharCode code, ByteView bytes);

  /// Writes the map after the sections and sets `map_offset` and `map_count`, the number of its
  /// entries.
  Status WriteMap(std::uint32_t& map_offset, std::uint32_t& map_count);

  /// Reserves `length` bytes for the caller to write. kFailure, as for the operations above, when
  /// the file would exceed the 32 bits of an offset.
  Status Skip(std::uint32_t length);

  /// Adds an entry for data that the caller wrote itself.
  Status AddEntry(FourCharCode code, std::uint32_t offset, std::uint32_t length);

 private:
  /// If `status` is kOk, adds an entry of `length` bytes at the current offset and advances it.
  Status Advance(FourCharCode code, std::uint32_t length, Status status);

  TDataFile& file_;
  std::uint32_t& offset_;
  TLossReporter* losses_;
  TRecordArray<TSectionMapEntry> map_;
};

}  // namespace zaf
