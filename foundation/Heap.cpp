#include "foundation/Heap.h"

#include <bit>
#include <cstdlib>

namespace zaf::heap {
namespace {

thread_local TAllocationFault* current_fault = nullptr;

bool IsToFail() { return current_fault != nullptr && current_fault->Strikes(); }

/// The size of the block that holds `size` bytes. Under a sanitizer exactly that many, so that it
/// sees every byte beyond.
std::size_t BlockSize(std::size_t size) {
#ifndef ZAF2XML_SANITIZED
  constexpr std::size_t kSmallestRounded = 1024;
  if (size > kSmallestRounded) {
    const std::size_t step = std::bit_floor(size) / 8;
    return (size + step - 1) / step * step;
  }
#endif
  return size;
}

}  // namespace

void* Allocate(std::size_t size) { return IsToFail() ? nullptr : std::malloc(BlockSize(size)); }

void* Reallocate(void* block, std::size_t old_size, std::size_t new_size) {
  if (IsToFail()) return nullptr;
  const std::size_t block_size = BlockSize(new_size);
  return block_size == BlockSize(old_size) ? block : std::realloc(block, block_size);
}

void Free(void* block) { std::free(block); }

TAllocationFault::TAllocationFault(std::uint64_t failing)
    : outer_(current_fault), failing_(failing) {
  current_fault = this;
}

TAllocationFault::~TAllocationFault() { current_fault = outer_; }

}  // namespace zaf::heap
