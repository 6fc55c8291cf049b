#include "dom/PagePool.h"

#include <algorithm>
#include <array>
#include <bit>
#include <pugixml.hpp>

#include "dom/Heap.h"

namespace dom {
namespace {

/// What stands in front of the memory that pugixml sees.
struct alignas(std::max_align_t) Block {
  std::size_t size_class;
  Block* next;  ///< Of the same class, while the block is kept.
};

#if defined(ZAF2XML_SANITIZED)
constexpr std::size_t kMostKept = 0;
#else
constexpr std::size_t kMostKept = std::size_t{32} << 20;
#endif

// Sizes are rounded up to one of four steps for each power of two, so that the block of one long
// text serves for another of about that length. What is lost that way is never touched. The pages
// for short texts, of 32 KiB, are a step themselves.
constexpr std::size_t kSmallestPower = 12;
constexpr std::size_t kSteps = 4;
constexpr std::size_t kClassCount = (25 - kSmallestPower) * kSteps;
constexpr std::size_t kNoClass = kClassCount;

std::size_t ClassOf(std::size_t size) {
  const std::size_t last = std::max(size, (std::size_t{1} << kSmallestPower) + 1) - 1;
  const auto power = static_cast<std::size_t>(std::bit_width(last)) - 1;
  const std::size_t step = last / ((std::size_t{1} << power) / kSteps) - kSteps;
  return std::min((power - kSmallestPower) * kSteps + step, kNoClass);
}

std::size_t SizeOf(std::size_t size_class) {
  return (kSteps + 1 + size_class % kSteps) << (kSmallestPower - 2 + size_class / kSteps);
}

/// Needs neither construction nor destruction, so that a document of static storage can still
/// free its pages when everything else of the thread is gone.
struct Pool {
  std::array<Block*, kClassCount> kept;
  std::size_t kept_size;
  std::size_t used_size;
  std::size_t most_used_size;
  bool is_watched;  ///< The end of the thread will empty it.
  bool is_closed;   ///< The thread ends: nothing is kept any more.
};

thread_local constinit Pool pool{};

Block* TakeKept(std::size_t size_class) {
  Block* const block = pool.kept[size_class];
  if (block) {
    pool.kept[size_class] = block->next;
    pool.kept_size -= SizeOf(size_class);
  }
  return block;
}

/// Frees kept blocks, the largest first, until `size` bytes or fewer are kept.
void ReduceTo(std::size_t size) {
  for (std::size_t i = kClassCount; i-- > 0 && pool.kept_size > size;)
    while (pool.kept_size > size && pool.kept[i]) Free(TakeKept(i));
}

/// Lives as long as its thread and frees then what the pool keeps.
class ThreadEnd {
 public:
  ThreadEnd() { pool.is_watched = true; }
  ThreadEnd(const ThreadEnd&) = delete;
  ThreadEnd& operator=(const ThreadEnd&) = delete;
  ~ThreadEnd() {
    pool.is_closed = true;
    ReduceTo(0);
  }
};

/// That of the thread that the program begins with is there before main, when it is registered
/// without taking memory.
const ThreadEnd end_of_first_thread;

void WatchThreadEnd() { static thread_local const ThreadEnd end_of_thread; }

}  // namespace

void* PagePool::Take(std::size_t size) {
  const std::size_t size_class = ClassOf(size);
  if (size_class == kNoClass) {
    Block* const block = static_cast<Block*>(
        size <= SIZE_MAX - sizeof(Block) ? Allocate(sizeof(Block) + size) : nullptr);
    if (!block) return nullptr;
    block->size_class = kNoClass;
    return block + 1;
  }

  Block* block = TakeKept(size_class);
  if (!block) block = static_cast<Block*>(Allocate(sizeof(Block) + SizeOf(size_class)));
  if (!block) return nullptr;
  block->size_class = size_class;
  pool.used_size += SizeOf(size_class);
  pool.most_used_size = std::max(pool.most_used_size, pool.used_size);
  ReduceTo(pool.most_used_size - pool.used_size);
  return block + 1;
}

void PagePool::Return(void* page) {
  if (!page) return;
  Block* const block = static_cast<Block*>(page) - 1;
  if (block->size_class == kNoClass) {
    Free(block);
    return;
  }
  if (!pool.is_watched) WatchThreadEnd();
  const std::size_t size = SizeOf(block->size_class);
  // A page may come from another thread.
  pool.used_size -= std::min(size, pool.used_size);
  const std::size_t most_kept = std::min(kMostKept, pool.most_used_size - pool.used_size);
  if (pool.is_closed || pool.kept_size + size > most_kept) {
    Free(block);
    return;
  }
  block->next = pool.kept[block->size_class];
  pool.kept[block->size_class] = block;
  pool.kept_size += size;
}

void PagePool::Install() {
  static const bool is_installed = [] {
    pugi::set_memory_management_functions(Take, Return);
    return true;
  }();
  static_cast<void>(is_installed);
}

std::size_t PagePool::GetKeptSize() { return pool.kept_size; }

}  // namespace dom
