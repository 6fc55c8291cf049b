#include "foundation/Heap.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace zaf::heap {
namespace {

thread_local constinit std::uint64_t failure_count = 0;

/// `size` rounded up to the next block size. Under sanitizers sizes up to 64 KiB are exact, so that
/// every access past the end is detected.
std::size_t BlockSize(std::size_t size) {
#ifdef ZAF2XML_SANITIZED
  if (size <= std::size_t{64} << 10) return size;
#endif
  constexpr std::size_t kLeastStep = 16;
  constexpr std::size_t kStepsPerPower = 8;
  const std::size_t step =
      size < 2 * kLeastStep * kStepsPerPower ? kLeastStep : std::bit_floor(size) / kStepsPerPower;
  const std::size_t block = (size + step - 1) & ~(step - 1);  // A step is a power of two.
  // On 32-bit systems the largest sizes have no next one.
  return sizeof size > sizeof(std::uint32_t) || block >= size ? block : size;
}

}  // namespace

std::uint64_t GetFailureCount() { return failure_count; }

void CountFailure() { ++failure_count; }

void* Allocate(std::size_t size) {
  void* const block = ::operator new(BlockSize(size), std::nothrow);
  if (block == nullptr) CountFailure();
  return block;
}

void* Reallocate(void* block, std::size_t old_size, std::size_t new_size) {
  if (BlockSize(new_size) == BlockSize(old_size)) return block;
  void* const moved = Allocate(new_size);
  if (moved == nullptr) return nullptr;
  std::memcpy(moved, block, std::min(old_size, new_size));
  Free(block);
  return moved;
}

void Free(void* block) { ::operator delete(block); }

}  // namespace zaf::heap
