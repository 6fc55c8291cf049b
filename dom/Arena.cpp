#include "dom/Arena.h"

#include <limits>

#include "dom/Blocks.h"
#include "dom/Heap.h"

namespace dom {
namespace {

/// The overhead of a page: the link to the previous one and the spare bytes after its end.
constexpr std::size_t kExtra = 2 * sizeof(void*) + kBlock;
constexpr std::size_t kPageSize = (std::size_t{32} << 10) - kExtra;
/// Larger blocks get a page of their own, so that little of a page is ever wasted.
constexpr std::size_t kLargest = kPageSize / 8;

}  // namespace

void Arena::Clear() {
  while (last_page_ != nullptr) {
    Page* const page = last_page_;
    last_page_ = page->before;
    Free(page);
  }
  next_ = nullptr;
  end_ = nullptr;
  has_failed_ = false;
}

void* Arena::AllocateElsewhere(std::size_t size) {
  if (size > kLargest) return AddPage(size);
  char* const place = AddPage(kPageSize);
  if (place == nullptr) return nullptr;
  next_ = place + RoundUp(size);
  end_ = place + kPageSize;
  return place;
}

/// Returns the first of `size` bytes in a new page.
char* Arena::AddPage(std::size_t size) {
  static_assert(kExtra == sizeof(Page) + alignof(Page) + kBlock);
  void* const memory = size <= std::numeric_limits<std::size_t>::max() - kExtra
                           ? dom::Allocate(kExtra + size)
                           : nullptr;
  if (memory == nullptr) {
    has_failed_ = true;
    return nullptr;
  }
  Page* const page = static_cast<Page*>(memory);
  page->before = last_page_;
  last_page_ = page;
  return static_cast<char*>(memory) + sizeof(Page);
}

}  // namespace dom
