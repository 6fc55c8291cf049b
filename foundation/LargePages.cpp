#include "foundation/LargePages.h"

#include <cstdlib>

#if defined(__linux__)
#include <sys/mman.h>
#endif
#if defined(__GLIBC__) && !defined(ZAF2XML_SANITIZED)
#include <malloc.h>
#define ZAF2XML_RESERVES_HEAP 1
#endif

namespace zaf {
namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20;

#if defined(ZAF2XML_RESERVES_HEAP)

/// From this size of a file on.
constexpr std::uint64_t kLeastSize = std::uint64_t{1} << 20;
/// Bytes of memory that a conversion takes for a byte of its input, if that is verified, too.
constexpr std::uint64_t kMemoryPerByte = 8;
/// What the heap may keep for the next file.
constexpr int kMostKept = 64 << 20;
constexpr int kUsualMappings = 65536;

#endif

}  // namespace

void AdviseLargePages(void* block, std::size_t size) {
#if defined(MADV_HUGEPAGE)
  const auto begin = reinterpret_cast<std::uintptr_t>(block);
  const std::uintptr_t first = (begin + kLargePage - 1) & ~(kLargePage - 1);
  const std::uintptr_t end = (begin + size) & ~(kLargePage - 1);
  if (first < end) madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);
#else
  static_cast<void>(block);
  static_cast<void>(size);
#endif
}

#if defined(ZAF2XML_RESERVES_HEAP)

TLargePageHeap::TLargePageHeap(std::uint64_t size) : is_active_(size >= kLeastSize) {
  if (!is_active_ || size > PTRDIFF_MAX / kMemoryPerByte) return;
  mallopt(M_TRIM_THRESHOLD, -1);  // Never: what is free at the end is the room.
  // A block that is mapped on its own would not become a part of the heap when it is given back.
  mallopt(M_MMAP_MAX, 0);
  const auto room = static_cast<std::size_t>(size * kMemoryPerByte);
  if (void* const block = std::malloc(room)) {
    AdviseLargePages(block, room);
    std::free(block);
  }
  mallopt(M_MMAP_MAX, kUsualMappings);
}

TLargePageHeap::~TLargePageHeap() {
  if (!is_active_) return;
  mallopt(M_TRIM_THRESHOLD, kMostKept);
  malloc_trim(kMostKept);
}

#else

TLargePageHeap::TLargePageHeap(std::uint64_t /*size*/) {}
TLargePageHeap::~TLargePageHeap() = default;

#endif

}  // namespace zaf
