#pragma once

#include <cstddef>

namespace dom {

/// The memory of one tree: pages that are filled from front to back and freed all at once. Only for
/// the classes of this folder.
class Arena {
 public:
  Arena() = default;
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;
  ~Arena() { Clear(); }

  /// Returns `size` bytes, aligned for a pointer; null when memory runs out. Always inlined: most
  /// sizes are constants, and every node needs it.
  [[nodiscard, gnu::always_inline]] void* Allocate(std::size_t size) {
    if (size >= static_cast<std::size_t>(end_ - next_)) return AllocateElsewhere(size);
    char* const place = next_;
    next_ += RoundUp(size);
    return place;
  }

  /// Frees all memory and resets the failure.
  void Clear();

  /// Marks the arena failed, e.g. when a text exceeds 32 bits.
  void SetFailed() { has_failed_ = true; }
  /// Whether memory ran out since the arena was made or cleared.
  [[nodiscard]] bool HasFailed() const { return has_failed_; }

 private:
  struct Page {
    Page* before;
  };

  static constexpr std::size_t RoundUp(std::size_t size) {
    return (size + alignof(Page) - 1) / alignof(Page) * alignof(Page);
  }

  void* AllocateElsewhere(std::size_t size);
  char* AddPage(std::size_t size);

  Page* last_page_ = nullptr;
  /// The free part of the current page. Spare bytes for a block follow its end, because blocks are
  /// read and written whole and sizes are rounded up.
  char* next_ = nullptr;
  char* end_ = nullptr;
  bool has_failed_ = false;
};

}  // namespace dom
