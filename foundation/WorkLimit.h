#pragma once

#include <algorithm>
#include <cstdint>

namespace zaf {

/// The limit of one kind of work that a legacy file of `size` bytes can cause, in bytes: eight
/// times its size, but at least 16 MiB. Its sections and records may overlap.
constexpr std::uint64_t WorkLimit(std::uint64_t size) {
  return std::max(8 * size, std::uint64_t{16} << 20);
}

}  // namespace zaf
