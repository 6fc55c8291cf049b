#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "foundation/LargePages.h"

#ifdef __linux__
#include <unistd.h>
#endif

namespace zaf {
namespace {

// The sanitizers have a heap of their own, which keeps what is given back.
#if defined(__linux__) && !defined(ZAF2XML_SANITIZED)

/// Bytes of memory that this process has at the moment.
std::size_t GetResidentSize() {
  std::size_t all = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> all >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

TEST(LargePageHeap, TakesNoMemoryByItselfAndKeepsLittle) {
  constexpr std::size_t kMiB = std::size_t{1} << 20;
  const std::size_t before = GetResidentSize();
  for (int round = 0; round < 2; ++round) {
    {
      const TLargePageHeap heap(512 * kMiB);
      EXPECT_LT(GetResidentSize(), before + 80 * kMiB);
      std::vector<std::unique_ptr<char[]>> blocks;
      for (std::size_t i = 0; i < 2000; ++i) {
        blocks.push_back(std::make_unique<char[]>(kMiB / 10));
        std::fill_n(blocks.back().get(), kMiB / 10, 'x');
      }
      EXPECT_GT(GetResidentSize(), before + 190 * kMiB);
    }
    EXPECT_LT(GetResidentSize(), before + 80 * kMiB);
  }
}

#endif

}  // namespace
}  // namespace zaf
