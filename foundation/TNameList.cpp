#include "foundation/TNameList.h"

#include <algorithm>
#include <cstring>

namespace zaf {

void TNameList::Append(std::string_view name) {
  constexpr std::size_t kBlockSize = std::size_t{16} << 10;
  const std::size_t size = name.size() + 1;
  if (size > room_) {
    const std::size_t block_size = std::max(size, kBlockSize);
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(block_size));
    next_ = blocks_.back().get();
    room_ = block_size;
  }
  names_.push_back(next_);
  *std::copy(name.begin(), name.end(), next_) = '\0';
  next_ += size;
  room_ -= size;
}

void TNameList::SortFrom(std::size_t first) {
  std::sort(names_.begin() + static_cast<std::ptrdiff_t>(first), names_.end(),
            [](const char* a, const char* b) { return std::strcmp(a, b) < 0; });
}

}  // namespace zaf
