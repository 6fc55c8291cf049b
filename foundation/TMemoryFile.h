#pragma once

#include <cstddef>
#include <vector>

#include "foundation/TDataFile.h"

namespace zaf {

/// A data file that is written in memory: always open, write-only. A write that would end after 4
/// GiB fails; throws std::bad_alloc when memory runs out.
class TMemoryFile final : public TDataFile {
 public:
  Status Seek(FourCharCode code, std::uint32_t offset) override;
  Status Write(std::uint32_t count, void* buffer) override;

  /// May be moved from when all is written.
  [[nodiscard]] std::vector<std::byte>& GetBytes() { return bytes_; }

 private:
  std::vector<std::byte> bytes_;
  std::uint32_t position_ = 0;
};

}  // namespace zaf
