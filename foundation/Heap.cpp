#include "foundation/Heap.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace zaf::heap {
namespace {

thread_local constinit TAllocationFault* current_fault = nullptr;
thread_local constinit std::uint64_t failure_count = 0;

/// Whether this request is to fail; it is counted then.
bool IsToFail() {
  if (current_fault == nullptr || !current_fault->Strikes()) return false;
  CountFailure();
  return true;
}

/// What the C heap gave. Counts a failure.
void* Counted(void* block) {
  if (block == nullptr) CountFailure();
  return block;
}

#ifdef ZAF2XML_SANITIZED

// Exactly as many bytes as were asked for, so that the sanitizer sees every byte beyond.
std::size_t BlockSize(std::size_t size) { return size; }
bool IsKept(std::size_t /*block_size*/) { return false; }
void* TakeBlock(std::size_t size) { return Counted(std::malloc(size)); }
void GiveBlock(void* block, std::size_t /*size*/) { std::free(block); }
void* TakeSmallKept(std::size_t /*size*/) { return nullptr; }
bool KeepSmall(void* /*block*/, std::size_t /*size*/) { return false; }

#else

constexpr std::size_t kUnit = 16;
constexpr std::size_t kLargestOfUnits = 1024;
constexpr std::size_t kStepsPerPower = 8;
constexpr std::size_t kLargestKept = std::size_t{256} << 10;
constexpr std::size_t kMostKept = std::size_t{8} << 20;

/// Rounded up to the next size that a block has.
std::size_t BlockSize(std::size_t size) {
  const std::size_t step = size <= kLargestOfUnits ? kUnit : std::bit_floor(size) / kStepsPerPower;
  return (size + step - 1) & ~(step - 1);  // A step is a power of two.
}

bool IsKept(std::size_t block_size) { return block_size <= kLargestKept; }

/// The number of a block size that is kept.
constexpr std::size_t ClassOf(std::size_t block_size) {
  if (block_size <= kLargestOfUnits) return block_size / kUnit;
  const auto power = static_cast<std::size_t>(std::bit_width(block_size)) - 1;
  const std::size_t step = block_size >> (power - std::bit_width(kStepsPerPower) + 1);
  constexpr std::size_t kFirstPower = std::bit_width(kLargestOfUnits) - 1;
  return kLargestOfUnits / kUnit + (power - kFirstPower) * kStepsPerPower + step - kStepsPerPower;
}

struct TKeptBlock {
  TKeptBlock* next;
};

/// The blocks that a thread keeps. Needs neither construction nor destruction, so that an object of
/// static storage can still be destroyed when everything else of the thread is gone.
struct TKeptBlocks {
  TKeptBlock* first[ClassOf(kLargestKept) + 1];
  std::size_t room;  ///< Bytes that may still be kept: none before the thread is watched.
  bool is_watched;   ///< The end of the thread empties them, or has done so.
};

thread_local constinit TKeptBlocks kept{};

/// Lives as long as its thread and empties its kept blocks then.
class TThreadEnd {
 public:
  TThreadEnd() {
    if (!std::exchange(kept.is_watched, true)) kept.room = kMostKept;
  }
  TThreadEnd(const TThreadEnd&) = delete;
  TThreadEnd& operator=(const TThreadEnd&) = delete;
  ~TThreadEnd() {
    kept.room = 0;
    for (TKeptBlock*& first : kept.first)
      while (first != nullptr) std::free(std::exchange(first, first->next));
  }
};

/// That of the thread that the program begins with is there before main, when it is registered
/// without taking memory.
const TThreadEnd end_of_first_thread;

void WatchThreadEnd() { static thread_local const TThreadEnd end_of_thread; }

/// Takes a kept block of a size that has this number; null when there is none.
void* TakeKept(std::size_t size, std::size_t number) {
  TKeptBlock* const block = kept.first[number];
  if (block == nullptr) return nullptr;
  kept.first[number] = block->next;
  kept.room += size;
  return block;
}

/// Keeps a block unless there is no room.
bool Keep(void* block, std::size_t size, std::size_t number) {
  if (size > kept.room) return false;
  kept.first[number] = new (block) TKeptBlock{kept.first[number]};
  kept.room -= size;
  return true;
}

void* TakeBlock(std::size_t size) {
  void* const block = IsKept(size) ? TakeKept(size, ClassOf(size)) : nullptr;
  return block != nullptr ? block : Counted(std::malloc(size));
}

void GiveBlock(void* block, std::size_t size) {
  if (IsKept(size)) {
    if (!kept.is_watched) WatchThreadEnd();
    if (Keep(block, size, ClassOf(size))) return;
  }
  std::free(block);
}

// Nearly all blocks are small and nearly all requests meet a kept one: the short way for these.
void* TakeSmallKept(std::size_t size) {
  const std::size_t number = (size + kUnit - 1) / kUnit;
  return size <= kLargestOfUnits ? TakeKept(number * kUnit, number) : nullptr;
}

bool KeepSmall(void* block, std::size_t size) {
  const std::size_t number = (size + kUnit - 1) / kUnit;
  return size <= kLargestOfUnits && Keep(block, number * kUnit, number);
}

#endif

}  // namespace

std::uint64_t GetFailureCount() { return failure_count; }

void CountFailure() { ++failure_count; }

void* Allocate(std::size_t size) {
  if (current_fault == nullptr)
    if (void* const block = TakeSmallKept(size)) return block;
  return IsToFail() ? nullptr : TakeBlock(BlockSize(size));
}

void* Reallocate(void* block, std::size_t old_size, std::size_t new_size) {
  if (IsToFail()) return nullptr;
  const std::size_t old_block_size = BlockSize(old_size);
  const std::size_t new_block_size = BlockSize(new_size);
  if (new_block_size == old_block_size) return block;
  if (!IsKept(old_block_size) && !IsKept(new_block_size))
    return Counted(std::realloc(block, new_block_size));  // It may have to copy nothing.
  void* const moved = TakeBlock(new_block_size);
  if (moved == nullptr) return nullptr;
  std::memcpy(moved, block, std::min(old_size, new_size));
  GiveBlock(block, old_block_size);
  return moved;
}

void Free(void* block, std::size_t size) {
  if (block != nullptr && !KeepSmall(block, size)) GiveBlock(block, BlockSize(size));
}

void Free(void* block) { std::free(block); }

void* TPooledObject::operator new(std::size_t size) {
  void* const block = Allocate(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

TAllocationFault::TAllocationFault(std::uint64_t failing)
    : outer_(current_fault), failing_(failing) {
  current_fault = this;
}

TAllocationFault::~TAllocationFault() { current_fault = outer_; }

}  // namespace zaf::heap
