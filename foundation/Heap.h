#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <vector>

/// The one place where the containers and the actions get their storage. It stands on the C heap;
/// whoever wants another heap replaces these functions. Nothing throws: null means no memory.
///
/// Containers grow in small fixed steps, because the capacity that they show is part of what they
/// promise. The blocks behind them are therefore rounded up, to a multiple of 16 and from 1 KiB on
/// to one of eight sizes per power of two: most steps then stay inside their block, and growing
/// step by step moves a number of bytes that is linear in the result. At most an eighth of a larger
/// block lies idle.
///
/// Blocks that are given back are kept for the next request of their size: one file after another
/// asks for the same ones. Each thread keeps its own, 8 MiB at most; in a build with sanitizers
/// nothing is kept, so that they see each block come and go. Keeping blocks takes no memory in the
/// thread that the program begins with. In another one the C library needs some, once, to give them
/// back when that thread ends, and ends the program when it has none.
namespace zaf::heap {

/// A new block of at least `size` bytes (greater than 0), aligned for every type, not initialised.
[[nodiscard]] void* Allocate(std::size_t size);

/// Brings a block that holds `old_size` bytes to at least `new_size` (both greater than 0) and
/// keeps what fits; the block may move. On failure the old block stays valid.
[[nodiscard]] void* Reallocate(void* block, std::size_t old_size, std::size_t new_size);

/// Gives a block back that was last asked for with `size`; null is allowed. Any thread may do it.
void Free(void* block, std::size_t size);
/// The same where nobody knows the size; nothing of it is kept.
void Free(void* block);

/// How often this thread asked for memory and there was none.
[[nodiscard]] std::uint64_t GetFailureCount();
/// Counts a failure of those who get their memory elsewhere and cannot say themselves what it cost.
void CountFailure();

/// Sees whether memory ran out in its thread since it was made. A container then keeps what it had
/// and says so, but not everybody asks each of them: who answers for a whole load or save looks
/// here, and counts it as failed.
class TMemoryWatch {
 public:
  [[nodiscard]] bool HasRunOut() const { return GetFailureCount() != count_before_; }

 private:
  std::uint64_t count_before_ = GetFailureCount();
};

/// For classes whose objects are to come from here: derive from it. The operators are the usual
/// ones, but objects that are deleted through a base need a virtual destructor, which tells their
/// size.
class TPooledObject {
 public:
  static void* operator new(std::size_t size);
  static void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
  }
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void* block, std::size_t size) { Free(block, size); }

 protected:
  ~TPooledObject() = default;
};

/// Has containers of the standard library get their memory from here. They throw std::bad_alloc
/// when there is none.
template <class T>
struct TPooledAllocator {
  using value_type = T;

  TPooledAllocator() = default;
  template <class Other>
  TPooledAllocator(const TPooledAllocator<Other>&) {}  // NOLINT(google-explicit-constructor)

  [[nodiscard]] T* allocate(std::size_t count) {
    void* const block = count <= PTRDIFF_MAX / kSize ? Allocate(count * kSize) : nullptr;
    if (block == nullptr) throw std::bad_alloc();
    return static_cast<T*>(block);
  }
  void deallocate(T* block, std::size_t count) { Free(block, count * kSize); }

  friend bool operator==(TPooledAllocator, TPooledAllocator) { return true; }

 private:
  static constexpr std::size_t kSize = sizeof(T);  // NOLINT(bugprone-sizeof-expression)
};

using TPooledString = std::basic_string<char, std::char_traits<char>, TPooledAllocator<char>>;
template <class T>
using TPooledVector = std::vector<T, TPooledAllocator<T>>;

/// While it lives, makes one request for memory of its thread fail: the one with number `failing`,
/// counted from 0. Shows what a failure leaves behind. They nest; the innermost counts.
class TAllocationFault {
 public:
  explicit TAllocationFault(std::uint64_t failing);
  TAllocationFault(const TAllocationFault&) = delete;
  TAllocationFault& operator=(const TAllocationFault&) = delete;
  ~TAllocationFault();

  /// Requests seen so far; the fault has happened when this is greater than `failing`.
  [[nodiscard]] std::uint64_t GetRequestCount() const { return count_; }

  /// Counts one request; true when it is to fail.
  bool Strikes() { return count_++ == failing_; }

 private:
  TAllocationFault* outer_;
  std::uint64_t failing_;
  std::uint64_t count_ = 0;
};

}  // namespace zaf::heap
