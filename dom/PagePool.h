#pragma once

#include <cstddef>

namespace dom {

/// The memory of all trees, pugixml's and ours. They take it in pages of about 32 KiB (and one for
/// each long text) and give them all back with each document; the pool keeps them for the next
/// document, because to get fresh pages from the system costs as much as to fill them. Each thread
/// has its own.
///
/// The pages that are kept and those in use are together never more than were in use at once
/// before, and at most 32 MiB are kept. In a build with sanitizers nothing is kept, so that they
/// see each page come and go. In other threads than the one that the program begins with, the C
/// library needs memory, once, to free what is kept when the thread ends, and ends the program when
/// it has none.
class PagePool {
 public:
  /// Has pugixml use the pool; before it parses anything. Further calls do nothing.
  static void Install();

  /// A page of `size` bytes, aligned for every type; null when memory runs out.
  [[nodiscard]] static void* Take(std::size_t size);
  /// Gives a page back, from whichever thread; null is allowed.
  static void Return(void* page);

  /// Bytes that the pool of this thread keeps without use.
  static std::size_t GetKeptSize();
};

}  // namespace dom
