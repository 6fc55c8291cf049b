// Counts the heap allocations of a program that is started with this library in LD_PRELOAD. The
// count, a native 64-bit number, is in the file that ZAF2XML_ALLOCATIONS names, mapped into memory,
// so that it survives however the program ends.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace {

std::atomic<std::uint64_t> early_count;
std::atomic<std::uint64_t>* count = &early_count;

void Count() { count->fetch_add(1, std::memory_order_relaxed); }

__attribute__((constructor)) void MapCount() {
  const char* const path = std::getenv("ZAF2XML_ALLOCATIONS");
  if (path == nullptr) return;
  const int file = open(path, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (file < 0 || ftruncate(file, sizeof(std::uint64_t)) != 0) std::abort();
  void* const place =
      mmap(nullptr, sizeof(std::uint64_t), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  if (place == MAP_FAILED) std::abort();
  close(file);
  count = static_cast<std::atomic<std::uint64_t>*>(place);
  count->store(early_count.load());
}

/// The next definition of a function: that of the program's heap.
template <class Function>
Function* Next(Function* /*replaced*/, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) {
  static const auto next = Next(malloc, "malloc");
  Count();
  return next(size);
}

void* calloc(std::size_t number, std::size_t size) {
  static const auto next = Next(calloc, "calloc");
  Count();
  return next(number, size);
}

void* realloc(void* block, std::size_t size) {
  static const auto next = Next(realloc, "realloc");
  Count();
  return next(block, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  static const auto next = Next(aligned_alloc, "aligned_alloc");
  Count();
  return next(alignment, size);
}
}

// An allocator with its own heap need not call malloc for these.
void* operator new(std::size_t size, const std::nothrow_t& /*unused*/) noexcept {
  return malloc(size);
}

void* operator new(std::size_t size) {
  void* const block = malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
