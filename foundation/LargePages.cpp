#include "foundation/LargePages.h"

#include <cstdlib>

#if defined(__linux__)
#include <sys/mman.h>
#endif
#if defined(__GLIBC__) && !defined(ZAF2XML_SANITIZED)
#include <malloc.h>
#define ZAF2XML_HEAP_IS_GLIBC 1
#endif

namespace zaf {
namespace {

[[maybe_unused]] constexpr std::size_t kLargePage = std::size_t{2} << 20;
/// The smallest file for which the heap gets room.
constexpr std::uint64_t kLeastSize = std::uint64_t{1} << 20;

#if defined(ZAF2XML_HEAP_IS_GLIBC)

/// Makes the heap larger by the room that the conversion of a file takes. False when it stays as
/// it was.
bool GiveRoom(std::uint64_t size) {
  // Bytes of memory for a byte of the input, if the output is verified, too.
  constexpr std::uint64_t kMemoryPerByte = 8;
  constexpr int kUsualMappings = 65536;  // What glibc begins with.
  if (sizeof(void*) < sizeof size || size > PTRDIFF_MAX / kMemoryPerByte) return false;
  mallopt(M_TRIM_THRESHOLD, -1);  // Never: the room is what is free at the end.
  // What is mapped on its own does not become a part of the heap when it is given back.
  mallopt(M_MMAP_MAX, 0);
  const auto room = static_cast<std::size_t>(size * kMemoryPerByte);
  if (void* const block = std::malloc(room)) {
    AdviseLargePages(block, room);
    std::free(block);
  }
  mallopt(M_MMAP_MAX, kUsualMappings);
  return true;
}

void TakeRoomBack() {
  constexpr int kMostKept = 64 << 20;
  mallopt(M_TRIM_THRESHOLD, kMostKept);
  malloc_trim(kMostKept);
}

#else

bool GiveRoom(std::uint64_t /*size*/) { return false; }
void TakeRoomBack() {}

#endif

}  // namespace

void AdviseLargePages(void* block, std::size_t size) {
#if defined(MADV_HUGEPAGE)
  const std::size_t excess = reinterpret_cast<std::uintptr_t>(block) % kLargePage;
  const std::size_t skipped = excess == 0 ? 0 : kLargePage - excess;
  if (size < skipped + kLargePage) return;
  const std::size_t whole = (size - skipped) / kLargePage * kLargePage;
  madvise(static_cast<char*>(block) + skipped, whole, MADV_HUGEPAGE);
#else
  static_cast<void>(block);
  static_cast<void>(size);
#endif
}

TLargePageHeap::TLargePageHeap(std::uint64_t size)
    : is_active_(size >= kLeastSize && GiveRoom(size)) {}

TLargePageHeap::~TLargePageHeap() {
  if (is_active_) TakeRoomBack();
}

}  // namespace zaf
