#include <gtest/gtest.h>
#include <memory>
#include <utility>

#include "foundation/CTextArray.h"
#include "foundation/CTextPtrArray.h"
#include "foundation/TOwningArray.h"
#include "foundation/TRecordArray.h"
#include "tests/foundation/Cases.h"
#include "tests/support/AllocationFault.h"

namespace zaf {
namespace {

using Numbers = TRecordArray<std::int32_t>;

Numbers MakeNumbers(std::int32_t count) {
  Numbers numbers;
  for (std::int32_t i = 0; i < count; ++i) numbers.Add(i);
  return numbers;
}

std::string List(const Numbers& numbers) {
  std::string list;
  for (const std::int32_t number : numbers) list += std::to_string(number) + " ";
  return list;
}

const std::int32_t kNine = 9;

/// Operations on an array of ascending numbers from 0.
struct TCase {
  std::int32_t count;
  test::TOperation<Numbers> operation;
  std::string_view result, after;
  std::uint32_t element_capacity;
};

// clang-format off
const TCase kCases[] = {
    {0, [](Numbers& n) { return n.Add(9); },                      "0", "9 ", 1},
    {1, [](Numbers& n) { return n.Add(9); },                      "1", "0 9 ", 4},
    {4, [](Numbers& n) { return n.Add(9); },                      "4", "0 1 2 3 9 ", 8},
    {8, [](Numbers& n) { return n.Add(9); },                      "8", "0 1 2 3 4 5 6 7 9 ", 12},
    {0, [](Numbers& n) { return n.ReserveElements(1); },          "1", "", 1},
    {0, [](Numbers& n) { return n.ReserveElements(2); },          "1", "", 4},
    {2, [](Numbers& n) { return n.ReserveElements(1); },          "1", "0 1 ", 4},
    {5, [](Numbers& n) { return n.ReserveElements(4); },          "0", "0 1 2 3 4 ", 8},
    {9, [](Numbers& n) { return n.ReserveElements(3); },          "1", "0 1 2 3 ", 4},
    {2, [](Numbers& n) { return n.ReserveElements(0xFFFFFFFF); }, "0", "0 1 ", 4},
    {0, [](Numbers& n) { n.ReserveElements(40); n.Add(9); return n.GetCapacity(); }, "4", "9 ", 44},
    {3, [](Numbers& n) { return *static_cast<std::int32_t*>(n.ElementAt(2)); },  "2", "0 1 2 ", 4},
    {3, [](Numbers& n) { return n.ElementAt(3) == nullptr; },     "1", "0 1 2 ", 4},
    {3, [](Numbers& n) { std::int32_t i = 7; n.GetElement(1, &i); return i; },  "1", "0 1 2 ", 4},
    {3, [](Numbers& n) { std::int32_t i = 7; return n.GetElement(3, &i); },  "-1", "0 1 2 ", 4},
    {3, [](Numbers& n) { return n.GetElement(0, nullptr); },      "-1", "0 1 2 ", 4},
    {3, [](Numbers& n) { return n.SetElement(1, &kNine); },       "1", "0 9 2 ", 4},
    {3, [](Numbers& n) { return n.SetElement(3, &kNine); },       "-1", "0 1 2 ", 4},
    {3, [](Numbers& n) { return n.SetElement(1, nullptr); },      "-1", "0 1 2 ", 4},
    {3, [](Numbers& n) { return n.Insert(100, &kNine); },         "3", "0 1 2 9 ", 4},
    {3, [](Numbers& n) { return n.Insert(1, &kNine); },           "1", "0 9 1 2 ", 4},
    {3, [](Numbers& n) { return n.InsertFirst(&kNine); },         "0", "9 0 1 2 ", 4},
    {4, [](Numbers& n) { return n.Insert(1, n.ElementAt(3)); },   "1", "0 3 1 2 3 ", 8},
    {4, [](Numbers& n) { return *n.Append(); },                   "0", "0 1 2 3 0 ", 8},
    {5, [](Numbers& n) { return n.Remove(5); },                   "-1", "0 1 2 3 4 ", 8},
    {5, [](Numbers& n) { return n.Remove(1); },                   "1", "0 2 3 4 ", 8},
    {3, [](Numbers& n) { return n.RemoveAll(); },                 "3", "", 0},
    {3, [](Numbers& n) { return n.Set("\0\0\0\0", 4).length; },   "4", "0 ", 8},
    {0, [](Numbers& n) { n.Set("\0\0\0\0xyz", 7); return n.InsertFirst(&kNine); }, "0", "9 0 ", 4},
    {3, [](Numbers& n) { n.Assign(MakeNumbers(1)); },             "", "0 ", 1},
    {3, [](Numbers& n) { n.Assign(CDynamicArray(8)); },           "", "0 1 2 ", 4},
    {3, [](Numbers& n) { static_cast<CDynamicArray&>(n) = CDynamicArray(8); },  "", "0 1 2 ", 4},
    {3, [](Numbers& n) { Numbers moved = std::move(n); return List(moved); },  "0 1 2 ", "", 0},
    {3, [](Numbers& n) { return n == MakeNumbers(3) && !(n == MakeNumbers(2)); }, "1", "0 1 2 ", 4},
};
// clang-format on

TEST(CDynamicArray, OperationsGiveTheirResults) {
  for (const TCase& c : kCases) {
    SCOPED_TRACE(testing::Message() << "row " << &c - kCases);
    Numbers numbers = MakeNumbers(c.count);
    EXPECT_EQ(c.operation.run(numbers), c.result);
    EXPECT_EQ(List(numbers), c.after);
    EXPECT_EQ(numbers.GetElementCapacity(), c.element_capacity);
  }
}

TEST(CDynamicArray, AssignsElementSizeAndCapacityWithTheBytes) {
  CDynamicArray array(3);
  array.Assign(MakeNumbers(5));
  EXPECT_EQ(array.GetElementSize() * 100 + array.GetElementCapacity() * 10 + array.GetCount(),
            485U);
  EXPECT_EQ(array.Add(array.ElementAt(4)), 5U);
  CDynamicArray other(1);
  other.Set("abc", 3);
  array = std::move(other);
  EXPECT_EQ(array.GetElementSize() * 10 + array.GetCount(), 13U);
  CData bytes;
  bytes.Set("abcdef", 6);
  array.Assign(bytes);
  EXPECT_EQ(array.GetCount(), 6U);
  EXPECT_FALSE(CDynamicArray(1024).ReserveElements(0x400000));
}

TEST(CDynamicArray, StaysAsItWasWithoutMemory) {
  Numbers numbers = MakeNumbers(8);
  const test::TAllocationFault fault(0);
  EXPECT_EQ(numbers.Add(8), kNoIndex);
  EXPECT_EQ(List(numbers), List(MakeNumbers(8)));
  EXPECT_EQ(numbers.GetElementCapacity(), 8U);
  const test::TAllocationFault next_fault(0);
  EXPECT_FALSE(numbers.ReserveElements(20));
}

TEST(CObjectArray, DeletesOnlyWhenTold) {
  CObjectArray blocks;
  EXPECT_EQ(blocks.Add(heap::Allocate(8)), 0U);
  EXPECT_EQ(blocks.Add(nullptr), 1U);
  EXPECT_TRUE(blocks.Get(0) != nullptr && blocks.Get(2) == nullptr);
  EXPECT_EQ(blocks.DeleteAll(), 2U);
  EXPECT_EQ(blocks.GetCount() + blocks.DeleteAll(), 0U);
  CText kept("kept");
  {
    CTextArray texts;
    texts.Add(&kept);
    texts.InsertFirst(new CText("deleted"));
    CTextArray copy;
    copy = texts;
    texts.DeleteElement(texts.Get(0));
    EXPECT_EQ(texts.Remove(0), 0U);
    EXPECT_EQ(copy.Get(1), &kept);
    EXPECT_EQ(texts.Get(0), &kept);
    texts.Insert(1, new CText("deleted"));
    texts.Remove(0);
    EXPECT_EQ(texts.DeleteAll(), 1U);
    EXPECT_EQ(copy.RemoveAll(), 2U);
  }
  EXPECT_EQ(kept.View(), "kept");
}

TEST(CTextPtrArray, OwnsItsTexts) {
  CTextPtrArray texts;
  EXPECT_EQ(texts.Append("a")->View(), "a");
  EXPECT_EQ(texts.Add(new CText("b")), 1U);
  EXPECT_EQ(texts.Add(nullptr), kNoIndex);
  EXPECT_EQ(texts.InsertFirst(new CText("0")), 0U);
  CTextPtrArray copy = texts;
  EXPECT_TRUE(copy == texts);
  copy[2] = "B";
  EXPECT_FALSE(copy == texts);
  EXPECT_EQ(texts.DeleteAll(), 3U);
  texts = std::move(copy);
  CTextArray borrowed;
  borrowed.Add(texts.Get(2));
  texts.Assign(borrowed);
  EXPECT_EQ(texts[0].View(), "B");
  texts.Assign(MakeNumbers(8));  // Not texts, so nothing changes.
  EXPECT_EQ(texts.GetCount(), 1U);
}

TEST(CTextPtrArray, AddsAllOrNothingWithoutMemory) {
  CTextPtrArray texts;
  texts.Append("old");
  CTextPtrArray others;
  others.Append("x");
  for (const std::uint64_t failing : {0U, 1U, 2U}) {
    const test::TAllocationFault fault(failing);
    texts = others;
    EXPECT_EQ(texts[0].View(), "old");
  }
  for (const std::uint64_t failing : {0U, 1U}) {
    const test::TAllocationFault fault(failing);
    EXPECT_EQ(texts.Append("z"), nullptr);
  }
  texts = others;
  EXPECT_EQ(texts[0].View(), "x");
}

struct TItem {
  explicit TItem(std::shared_ptr<int> shared) : use(std::move(shared)) {}
  bool operator==(const TItem& other) const { return *use == *other.use; }
  std::shared_ptr<int> use;
};

TEST(TOwningArray, CopiesAndDeletesItsObjects) {
  const auto use = std::make_shared<int>(1);
  {
    TOwningArray<TItem> items;
    const TItem* const first = items.Append(use);
    for (int i = 0; i < 9; ++i) items.Append(use);
    EXPECT_EQ(first, items.Get(0));
    TOwningArray<TItem> copy = items;
    EXPECT_EQ(use.use_count(), 21);
    EXPECT_TRUE(copy == items);
    copy.Append(use);
    EXPECT_FALSE(copy == items);
    items = std::move(copy);
    EXPECT_EQ(use.use_count(), 12);
    EXPECT_EQ(items.Add(nullptr), kNoIndex);
  }
  EXPECT_EQ(use.use_count(), 1);
}

TEST(TOwningArray, ReportsThatMemoryIsInsufficient) {
  TOwningArray<TItem> items;
  for (const std::uint64_t failing : {0U, 1U}) {
    const test::TAllocationFault fault(failing);
    EXPECT_EQ(items.Append(nullptr), nullptr);
  }
  EXPECT_EQ(items.GetCount(), 0U);
}

}  // namespace
}  // namespace zaf
