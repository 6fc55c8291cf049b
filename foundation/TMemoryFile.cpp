#include "foundation/TMemoryFile.h"

#include <cstring>
#include <limits>

namespace zaf {

Status TMemoryFile::Seek(FourCharCode /*code*/, std::uint32_t offset) {
  position_ = offset;
  return Status::kOk;
}

Status TMemoryFile::Write(std::uint32_t count, void* buffer) {
  if (count > std::numeric_limits<std::uint32_t>::max() - position_) return Status::kFailure;
  if (count == 0) return Status::kOk;
  const std::uint32_t end = position_ + count;
  if (end > bytes_.size()) bytes_.resize(end);
  std::byte* const target = bytes_.data() + position_;
  std::memcpy(target, buffer, count);
  if (IsScrambled()) Scramble(count, target);
  position_ = end;
  return Status::kOk;
}

}  // namespace zaf
