#include <gtest/gtest.h>

#include "foundation/TFixedText.h"
#include "foundation/TLazyRecord.h"
#include "tests/support/AllocationFault.h"

namespace zaf {
namespace {

using TName = TFixedText<64>;

TName NameOf(std::string_view text) {
  TName name{};
  name.Set(text);
  return name;
}

TEST(LazyRecord, TakesMemoryOnlyWhileItDiffersFromANewOne) {
  const test::TAllocationFault none(1'000'000);
  TLazyRecord<TName> record;
  EXPECT_TRUE(record.Set(TName{}));
  EXPECT_EQ(none.GetRequestCount(), 0U);
  EXPECT_TRUE(record.Set(NameOf("b")) && record.Set(NameOf("c")));
  EXPECT_EQ(none.GetRequestCount(), 1U);
  TLazyRecord<TName> copy(record);
  EXPECT_TRUE(record.Set(TName{}));
  EXPECT_EQ(record.Get().View(), "");
  EXPECT_EQ(copy.Get().View(), "c");
  copy = record;
  EXPECT_EQ(copy.Get().View(), "");
}

TEST(LazyRecord, KeepsWhatItHadWithoutMemory) {
  TLazyRecord<TName> record, target;
  EXPECT_TRUE(record.Set(NameOf("b")));
  const heap::TMemoryWatch memory;
  const test::TAllocationFault fault(0);
  target = record;
  EXPECT_TRUE(memory.HasRunOut());
  const test::TAllocationFault next_fault(0);
  EXPECT_FALSE(target.Set(NameOf("c")));
  EXPECT_EQ(target.Get().View(), "");
}

}  // namespace
}  // namespace zaf
