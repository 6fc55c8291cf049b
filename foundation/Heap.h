#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

/// Memory without exceptions, for the containers and for everything whose size depends on the
/// input. All of it comes from `operator new`, so a program that replaces that also replaces this
/// heap.
namespace zaf::heap {

/// Returns a new block of at least `size` bytes (greater than 0), aligned for every type and
/// uninitialised; null when memory runs out.
[[nodiscard]] void* Allocate(std::size_t size);

/// Resizes a block of `old_size` bytes to at least `new_size` (both greater than 0), preserving the
/// bytes that fit; it may move. Null when memory runs out: the old block is then still valid.
///
/// Containers grow in small fixed steps, because the capacity that they show is part of their
/// contract. Blocks are therefore rounded up to one of eight sizes per power of two: most steps
/// stay inside their block, and growing step by step moves a number of bytes linear in the result.
[[nodiscard]] void* Reallocate(void* block, std::size_t old_size, std::size_t new_size);

/// Frees a block; null is allowed.
void Free(void* block);

/// Frees a block that a std::unique_ptr owns.
struct TFree {
  void operator()(void* block) const { Free(block); }
};

/// How often memory ran out in this thread without an exception.
[[nodiscard]] std::uint64_t GetFailureCount();
void CountFailure();

/// Constructs an object; null, counted as a failure, when memory runs out.
template <class T, class... Arguments>
[[nodiscard]] std::unique_ptr<T> MakeUnique(Arguments&&... arguments) {
  std::unique_ptr<T> object(new (std::nothrow) T(std::forward<Arguments>(arguments)...));
  if (object == nullptr) CountFailure();
  return object;
}

/// Reports whether memory has run out in this thread since the watch was made. A container then
/// keeps its content and returns a failure, but not every caller checks that: a load or save checks
/// once for all, here.
class TMemoryWatch {
 public:
  [[nodiscard]] bool HasRunOut() const { return GetFailureCount() != count_before_; }

 private:
  std::uint64_t count_before_ = GetFailureCount();
};

}  // namespace zaf::heap
