#pragma once

#include <cstdint>

namespace zaf::test {

/// During its lifetime makes one allocation of its thread fail: the one with number `failing`,
/// counted from 0. They nest; the innermost counts. A program that links it has its `operator new`.
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

}  // namespace zaf::test
