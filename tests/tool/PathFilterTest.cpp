#include <gtest/gtest.h>

#include "tool/PathFilter.h"
#include "tool/TOrderedWork.h"

namespace zaf {
namespace {

TEST(PathFilter, GlobsMatchWholePaths) {
  struct {
    const char* glob;
    const char* path;
    bool is_matched;
  } const rows[] = {
      {"a.zaf", "b/a.zaf", false},
      {"*.zaf", "a.zaf", true},
      {"*.zaf", ".zaf", true},
      {"*.zaf", "b/a.zaf", false},
      {"*/a.zaf", "b/a.zaf", true},
      {"a**b", "ab", true},
      {"**/a.zaf", "a.zaf", true},
      {"**/a.zaf", "b/c/a.zaf", true},
      {"**/a.zaf", "ba.zaf", false},
      {"b/**/a.zaf", "b/a.zaf", true},
      {"b/**", "b/c/a.zaf", true},
      {"b/**", "b", false},
      {"?.zaf", "a.zaf", true},
      {"a?b", "a/b", false},
      {"", "", true},
      {"", "a", false},
      {"*", "", true},
      {"[a].zaf", "a.zaf", false},
      {"A.zaf", "a.zaf", false},
  };
  for (const auto& row : rows)
    EXPECT_EQ(MatchesGlob(row.path, row.glob), row.is_matched) << row.glob << " " << row.path;
}

TEST(PathFilter, TheLastMatchCountsAndTheFirstRuleSaysWhatElseIs) {
  using enum TPathFilter::Rule;
  TPathFilter filter;
  EXPECT_TRUE(filter.Takes("x"));
  filter.Add(kExclude, "old/**");
  EXPECT_TRUE(filter.Takes("x"));
  EXPECT_FALSE(filter.Takes("old/x"));
  filter.Add(kInclude, "old/keep*");
  EXPECT_TRUE(filter.Takes("old/keep.zaf"));
  TPathFilter includes;
  includes.Add(kInclude, "a*");
  EXPECT_FALSE(includes.Takes("b"));
}

// Test vectors of the 32-bit FNV-1a: "" 811C9DC5, "a" E40C292C, "foobar" BF9CF968.
TEST(PathFilter, ShardsFollowTheHash) {
  for (const auto& [path, hash] :
       {std::pair{"", 0x811C9DC5U}, {"a", 0xE40C292CU}, {"foobar", 0xBF9CF968U}})
    for (std::uint32_t k = 1; k <= 1000; ++k)
      ASSERT_EQ((TShard{k, 1000}.Takes(path)), hash % 1000 == k - 1) << path;
}

/// Steps for the items from 0 to 999, of which emitting `failing` throws.
struct TSteps {
  int next = 0, emitted = 0;
  int failing = -1;
  bool is_in_order = true;
  bool Next(int& item) { return (item = next++) < 1000; }
  static void Work(int& item) {
    if (item % 7 == 0) std::this_thread::yield();
  }
  void Emit(int& item) {
    is_in_order &= item == emitted++;
    if (item == failing) throw std::runtime_error("emit");
  }
  static bool Depends(int item, int earlier) { return item % 10 == earlier % 10; }
};

TEST(OrderedWork, EmitsInOrderAndPassesFailuresOn) {
  for (const unsigned jobs : {1U, 2U, 5U}) {
    TSteps steps;
    TOrderedWork<int, TSteps>(jobs, steps).Run();
    EXPECT_TRUE(steps.is_in_order);
    EXPECT_EQ(steps.emitted, 1000);
    TSteps failing;
    failing.failing = 300;
    EXPECT_THROW((TOrderedWork<int, TSteps>(jobs, failing).Run()), std::runtime_error);
    EXPECT_EQ(failing.emitted, 301);
  }
}

}  // namespace
}  // namespace zaf
