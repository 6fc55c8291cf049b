#pragma once

#include <cstddef>
#include <cstdint>

namespace dom {

/// The memory of all trees. pugixml takes it in pages of about 32 KiB (and one for each long text)
/// and gives them all back with each document; the pool keeps them for the next document, because
/// to get fresh pages from the system costs as much as to fill them. Each thread has its own.
///
/// The pages that are kept and those in use are together never more than were in use at once
/// before, and at most 32 MiB are kept. In a build with sanitizers nothing is kept, so that they
/// see each page come and go.
class PagePool {
 public:
  /// Has pugixml use the pool; before the first tree is made. Further calls do nothing.
  static void Install();

  /// How often memory ran out in this thread. pugixml's functions report it in their results,
  /// but not once for a whole document.
  static std::uint64_t GetFailureCount();

  /// Counts a failure to get memory for a tree by other means.
  static void CountFailure();

  /// Bytes that the pool of this thread keeps without use.
  static std::size_t GetKeptSize();
};

}  // namespace dom
