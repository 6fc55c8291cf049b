#include <gtest/gtest.h>
#include <memory>
#include <utility>
#include <vector>

#include "foundation/CDynamicArray.h"
#include "foundation/CTextArray.h"
#include "foundation/CTextPtrArray.h"
#include "foundation/TOwningArray.h"
#include "foundation/TRecordArray.h"
#include "tests/support/AllocationFault.h"

namespace zaf {
namespace {

using Numbers = TRecordArray<std::int32_t>;

Numbers MakeNumbers(std::int32_t count) {
  Numbers numbers;
  for (std::int32_t i = 0; i < count; ++i) numbers.Add(i);
  return numbers;
}

std::vector<std::int32_t> List(const Numbers& numbers) { return {numbers.begin(), numbers.end()}; }

TEST(CDynamicArray, GrowsByFourElements) {
  Numbers numbers;
  for (const std::uint32_t capacity : {1U, 4U, 4U, 4U, 8U, 8U, 8U, 8U, 12U}) {
    numbers.Add(0);
    EXPECT_EQ(numbers.GetElementCapacity(), capacity);
  }
}

TEST(CDynamicArray, ReservesInStepsOfFour) {
  Numbers numbers;
  EXPECT_TRUE(numbers.ReserveElements(8));
  EXPECT_TRUE(numbers.ReserveElements(9));
  EXPECT_FALSE(numbers.ReserveElements(8));  // Would shrink by exactly one step: to itself.
  const test::TAllocationFault none(1'000'000);
  for (int i = 0; i < 12; ++i) numbers.Add(i);
  EXPECT_EQ(none.GetRequestCount(), 0U);
  EXPECT_TRUE(numbers.ReserveElements(3));
  EXPECT_EQ(List(numbers), (std::vector<std::int32_t>{0, 1, 2, 3}));
  EXPECT_FALSE(numbers.ReserveElements(0xFFFFFFFF));
  EXPECT_FALSE(CDynamicArray(1024).ReserveElements(0x400000));
}

TEST(CDynamicArray, InsertsAnywhereAndCopiesOut) {
  Numbers numbers = MakeNumbers(6);
  std::int32_t value = 9;
  EXPECT_EQ(numbers.Insert(100, &value), 6U);
  EXPECT_EQ(numbers.InsertFirst(&value), 0U);
  EXPECT_EQ(numbers.Insert(2, numbers.ElementAt(7)), 2U);  // One of its own, while it grows.
  EXPECT_EQ(List(numbers), (std::vector<std::int32_t>{9, 0, 9, 1, 2, 3, 4, 5, 9}));
  EXPECT_EQ(*numbers.Append(), 0);
  EXPECT_EQ(numbers.GetElement(4, &value), 4U);
  EXPECT_EQ(value, 2);
  EXPECT_EQ(numbers.GetElement(10, &value), kNoIndex);
  EXPECT_EQ(numbers.SetElement(0, nullptr), kNoIndex);
  EXPECT_EQ(numbers.RemoveAll(), 10U);
  EXPECT_EQ(numbers.GetCount() + numbers.GetElementCapacity() + numbers.GetCapacity(), 0U);
}

TEST(CDynamicArray, AssignsElementSizeAndCapacityWithTheBytes) {
  const Numbers numbers = MakeNumbers(5);
  CDynamicArray array(1);
  array.Assign(numbers);
  EXPECT_EQ(array.GetElementCapacity(), 8U);
  EXPECT_EQ(array.Add(array.ElementAt(4)), 5U);
  array.Set("abcdefgh", 8);
  EXPECT_EQ(array.GetCount(), 2U);
  Numbers typed = numbers;
  typed.Assign(CDynamicArray(8));  // Of another size: refused.
  EXPECT_TRUE(typed == numbers);
  const Numbers moved = std::move(typed);
  EXPECT_TRUE(moved == numbers);
  // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
  EXPECT_EQ(typed.GetElementCapacity(), 0U);
}

TEST(CDynamicArray, StaysAsItWasWithoutMemory) {
  Numbers numbers = MakeNumbers(8);
  const test::TAllocationFault fault(0);
  EXPECT_EQ(numbers.Add(8), kNoIndex);
  EXPECT_EQ(numbers.Add(8), 8U);
}

TEST(CObjectArray, DeletesOnlyWhenTold) {
  CObjectArray blocks;
  blocks.Add(heap::Allocate(8));
  blocks.Add(nullptr);
  EXPECT_EQ(blocks.DeleteAll(), 2U);
  CText kept("kept");
  {
    CTextArray texts;
    texts.Add(&kept);
    texts.InsertFirst(new CText("deleted"));
    CTextArray copy;
    copy = texts;
    EXPECT_EQ(texts.DeleteAt(0), 0U);
    EXPECT_EQ(copy.Get(1), &kept);
    EXPECT_EQ(texts[0].View(), "kept");
  }
  EXPECT_EQ(kept.View(), "kept");
}

TEST(CTextPtrArray, OwnsItsTexts) {
  CTextPtrArray texts;
  texts.Append("a");
  texts.Add(new CText("b"));
  EXPECT_EQ(texts.Add(nullptr), kNoIndex);
  CTextPtrArray copy = texts;
  EXPECT_TRUE(copy == texts);
  copy[1] = "B";
  EXPECT_FALSE(copy == texts);
  EXPECT_EQ(texts.DeleteAt(0), 0U);
  texts = std::move(copy);
  CTextArray borrowed;
  borrowed.Add(&texts[1]);
  texts.Assign(borrowed);
  EXPECT_EQ(texts[0].View(), "B");
  texts.Assign(MakeNumbers(8));  // No texts: refused.
  EXPECT_EQ(texts.GetCount(), 1U);
}

TEST(CTextPtrArray, AddsAllOrNothingWithoutMemory) {
  CTextPtrArray texts;
  texts.Append("old");
  CTextPtrArray others;
  others.Append("x");
  const test::TAllocationFault fault(1);  // The first request is for the pointer.
  texts = others;
  EXPECT_EQ(texts[0].View(), "old");
  const test::TAllocationFault next_fault(0);
  EXPECT_EQ(texts.Append("z"), nullptr);
}

TEST(TOwningArray, CopiesAndDeletesItsObjects) {
  struct TItem {
    explicit TItem(std::shared_ptr<int> shared) : use(std::move(shared)) {}
    bool operator==(const TItem& other) const { return *use == *other.use; }
    std::shared_ptr<int> use;
  };
  const auto use = std::make_shared<int>(1);
  {
    TOwningArray<TItem> items;
    TItem& first = items.Append(use);
    for (int i = 0; i < 9; ++i) items.Append(use);
    EXPECT_EQ(&first, items.Get(0));
    TOwningArray<TItem> copy = items;
    EXPECT_EQ(use.use_count(), 21);
    EXPECT_TRUE(copy == items);
    copy.DeleteAt(0);
    EXPECT_FALSE(copy == items);
    items = std::move(copy);
    EXPECT_EQ(use.use_count(), 10);
  }
  EXPECT_EQ(use.use_count(), 1);
}

}  // namespace
}  // namespace zaf
