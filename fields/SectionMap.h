#pragma once

#include <array>
#include <cstdint>

#include "fields/TRecordHeader.h"
#include "fields/TSectionWriter.h"
#include "foundation/CData.h"
#include "foundation/Status.h"
#include "foundation/TByteReader.h"
#include "foundation/TDataFile.h"

namespace zaf {

/// Reads the record header at `offset`. Fails if the file ends before the header does; kMalformed
/// if the file's read budget is exhausted.
Status ReadRecordHeader(TDataFile& file, std::uint32_t offset, TRecordHeader& header);

/// Writes the record header at `offset`.
Status WriteRecordHeader(TDataFile& file, std::uint32_t offset, const TRecordHeader& header);

/// The section map of a record. Refers to the bytes of a file in memory, otherwise owns a copy of
/// the entries that the file holds: the count in a header alone allocates nothing.
class TSectionMap {
 public:
  /// Locates the entries that lie entirely within the file, which may be fewer than the header
  /// declares. kMalformed if the file's read budget is exhausted.
  Status Open(TDataFile& file, const TRecordHeader& header);

  /// Whether the file contains all entries that the header declares.
  [[nodiscard]] bool IsComplete() const { return is_complete_; }

  /// Takes the next entry; false at the end.
  bool Next(TSectionMapEntry& entry) {
    std::array<std::uint32_t, 3> numbers;
    if (entries_.ReadU32(numbers) != Status::kOk) return false;
    entry = {FourCharCode{numbers[0]}, numbers[1], numbers[2]};
    return true;
  }

 private:
  CData scratch_;
  TByteReader entries_{ByteView()};
  bool is_complete_ = false;
};

}  // namespace zaf
