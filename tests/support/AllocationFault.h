#pragma once

#include <cstdint>

namespace zaf::test {

/// During its lifetime makes one allocation of its thread fail: the one with index `failing`, from
/// 0. They nest; the innermost counts. Programs that link it use its `operator new`.
class TAllocationFault {
 public:
  explicit TAllocationFault(std::uint64_t failing);
  TAllocationFault(const TAllocationFault&) = delete;
  TAllocationFault& operator=(const TAllocationFault&) = delete;
  ~TAllocationFault();

  /// The number of requests so far; the fault has occurred if this is greater than `failing`.
  [[nodiscard]] std::uint64_t GetRequestCount() const { return count_; }

  /// Counts one request; returns whether it must fail.
  bool Strikes() { return count_++ == failing_; }

 private:
  TAllocationFault* outer_;
  std::uint64_t failing_;
  std::uint64_t count_ = 0;
};

}  // namespace zaf::test
