#include <gtest/gtest.h>

#include "foundation/TFixedText.h"
#include "foundation/TLazyRecord.h"
#include "tests/support/AllocationFault.h"

namespace zaf {
namespace {

struct TPair {
  TFixedText<64> first{};
  TFixedText<64> second{};
};
using TLazyPair = TLazyRecord<TPair>;

TPair PairOf(std::string_view second) {
  TPair pair;
  pair.second.Set(second);
  return pair;
}

TEST(LazyRecord, TakesMemoryOnlyWhileItDiffersFromANewOne) {
  const test::TAllocationFault none(1'000'000);
  TLazyPair pair;
  EXPECT_TRUE(pair.Set(TPair{}));
  EXPECT_EQ(none.GetRequestCount(), 0U);
  EXPECT_TRUE(pair.Set(PairOf("b")) && pair.Set(PairOf("c")));
  EXPECT_EQ(none.GetRequestCount(), 1U);
  EXPECT_EQ(pair.Get().second.View(), "c");
  EXPECT_TRUE(pair.Set(TPair{}));
  EXPECT_EQ(pair.Get().second.View(), "");
}

TEST(LazyRecord, CopyHasARecordOfItsOwn) {
  TLazyPair pair;
  EXPECT_TRUE(pair.Set(PairOf("b")));
  TLazyPair copy(pair);
  EXPECT_TRUE(pair.Set(PairOf("c")));
  EXPECT_EQ(copy.Get().second.View(), "b");
  copy = pair;
  EXPECT_TRUE(pair.Set(TPair{}));
  EXPECT_EQ(copy.Get().second.View(), "c");
  copy = pair;
  EXPECT_EQ(copy.Get().second.View(), "");
}

TEST(LazyRecord, KeepsWhatItHadWithoutMemory) {
  TLazyPair pair;
  EXPECT_TRUE(pair.Set(PairOf("b")));
  TLazyPair target;
  const heap::TMemoryWatch memory;
  const test::TAllocationFault fault(0);
  target = pair;
  EXPECT_EQ(target.Get().second.View(), "");
  EXPECT_TRUE(memory.HasRunOut());
  const test::TAllocationFault next_fault(0);
  EXPECT_FALSE(target.Set(PairOf("c")));
  EXPECT_EQ(target.Get().second.View(), "");
}

}  // namespace
}  // namespace zaf
