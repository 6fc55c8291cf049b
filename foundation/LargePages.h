#pragma once

#include <cstddef>
#include <cstdint>

namespace zaf {

/// Asks the system for large pages where the block has room for some. It is advice: where large
/// pages are not to be had, nothing happens.
void AdviseLargePages(void* block, std::size_t size);

/// Has the C heap lie on large pages while a large file is converted: in pages of 4 KiB, handing
/// out and clearing memory takes the system longer than the conversion takes.
///
/// The heap gets room for the whole conversion in one piece. That is address space; memory is taken
/// when it is touched. Nothing happens for small files, with other C libraries than glibc, on
/// systems of 32 bits, and where the system refuses; no result depends on it.
///
/// It is about the heap of the whole process: one at a time. What was set for that heap with
/// mallopt or in the environment is lost, and 64 MiB that are free may be kept.
class TLargePageHeap {
 public:
  /// For the conversion of a file of `size` bytes.
  explicit TLargePageHeap(std::uint64_t size);
  TLargePageHeap(const TLargePageHeap&) = delete;
  TLargePageHeap& operator=(const TLargePageHeap&) = delete;
  /// Gives what is free then back to the system, but for what is kept.
  ~TLargePageHeap();

 private:
  bool is_active_;
};

}  // namespace zaf
