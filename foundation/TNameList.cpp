#include "foundation/TNameList.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace zaf {

void TNameList::Append(std::string_view name) {
  constexpr std::size_t kMost = std::numeric_limits<std::uint32_t>::max();
  if (characters_.size() > kMost) throw std::bad_alloc();
  offsets_.push_back(static_cast<std::uint32_t>(characters_.size()));
  characters_.append(name).push_back('\0');
}

void TNameList::SortFrom(std::size_t first) {
  const char* const characters = characters_.data();
  std::sort(offsets_.begin() + static_cast<std::ptrdiff_t>(first), offsets_.end(),
            [characters](std::uint32_t a, std::uint32_t b) {
              return std::strcmp(characters + a, characters + b) < 0;
            });
}

}  // namespace zaf
