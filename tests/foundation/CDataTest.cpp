#include <gtest/gtest.h>
#include <string>

#include "foundation/CText.h"
#include "tests/foundation/Cases.h"
#include "tests/support/AllocationFault.h"

namespace zaf {
namespace {

using namespace std::string_view_literals;

CData Buffer(std::string_view bytes, std::uint32_t capacity = 0) {
  CData data;
  data.Set(bytes.data(), static_cast<std::uint32_t>(bytes.size()), capacity);
  return data;
}

struct TCase {
  std::string_view before;
  std::uint32_t capacity_before;  ///< A lower bound, in bytes.
  test::TOperation<CData> operation;
  std::string_view result, after;
  std::uint32_t capacity;
};

// clang-format off
const TCase kCases[] = {
    {"",       100,  [](CData& d) { return d.Reserve(101); },                  "1", "", 112},
    {"",       4096, [](CData& d) { return d.Reserve(4097); },                 "1", "", 4112},
    {"",       4097, [](CData& d) { return d.Reserve(4098); },                 "1", "", 8192},
    {"",       4500, [](CData& d) { return d.Reserve(8192); },                 "1", "", 12288},
    {"abc",    100,  [](CData& d) { return d.Reserve(0); },                    "1", "", 0},
    {"abc",    31,   [](CData& d) { return d.Reserve(0); },                    "1", "abc", 31},
    {"abc",    0,    [](CData& d) { return d.Reserve(0xFFFFFFFF); },           "0", "abc", 3},
    {"abc",    0,    [](CData& d) { d.Release(); return d.GetData() == nullptr; }, "1", "", 0},
    {"abc",    0,    [](CData& d) { d.Clear(); return *d.GetData() + 0; },     "0", "", 3},
    {"",       9,    [](CData& d) { return *d.GetData() + 0; },                "0", "", 9},
    {"ab",     0,    [](CData& d) { return d.EqualsBytes("ab", 2); },          "1", "ab", 2},
    {"ab",     0,    [](CData& d) { return d.EqualsBytes("aB", 2); },          "0", "ab", 2},
    {"ab",     0,    [](CData& d) { return d.EqualsBytes("abc", 3); },         "0", "ab", 2},
    {"ab",     0,    [](CData& d) { return d.EqualsBytes(nullptr, 2); },       "0", "ab", 2},
    {"",       0,    [](CData& d) { return d.EqualsBytes(nullptr, 0); },       "1", "", 0},
    {"ab",     0,    [](CData& d) { return d.EqualsData(Buffer("ab")); },      "1", "ab", 2},
    {"ab",     0,    [](CData& d) { return d.EqualsData(Buffer("a")); },       "0", "ab", 2},
    {"old",    0,    [](CData& d) { return d.Set("xy", 2).data == d.GetData(); },  "1", "xy", 3},
    {"",       0,    [](CData& d) { return d.Set("abcdef", 6, 20).length; },   "6", "abcdef", 20},
    {"abc",    0,    [](CData& d) { return d.Set("", 0).length; },             "0", "", 3},
    {"abcdef", 20,   [](CData& d) { return d.Set(d.GetData() + 2, 3, 99).length; }, "3", "cde", 20},
    {"abcdef", 0,    [](CData& d) { return d.Set(d.GetData() + 4, 6).length; },
                                                                  "6", "ef\0\0\0\0"sv, 6},
    {"abcdef", 0,    [](CData& d) { return d.Set(d.GetData() + 4, 99).length; },
                                                                  "6", "ef\0\0\0\0"sv, 6},
    {"abc",    0,    [](CData& d) { return d.Set(nullptr, 2).length; },        "2", "ab", 3},
    {"abcdef", 40,   [](CData& d) { d.Assign(Buffer("x")); },                  "", "x", 1},
    {"abcdef", 0,    [](CData& d) { Buffer("xyz").AssignTo(d); },              "", "xyz", 6},
    {"ab",     0,    [](CData& d) { char out[9]; return d.CopyOut(out, 9); },  "2", "ab", 2},
    {"ab",     0,    [](CData& d) { return d.CopyOut(nullptr, 9); },           "0", "ab", 2},
    {"abcdef", 0,    [](CData& d) { d.Extract(d, 2, 99); },                    "", "cdef", 6},
    {"",       0,    [](CData& d) { return d.Splice(7, 3, "abc", 3); },        "3", "abc", 3},
    {"abc",    0,    [](CData& d) { return d.Splice(1, 1, "12", 2); },         "4", "a12c", 16},
    {"abc",    20,   [](CData& d) { return d.Splice(3, 0, "12", 2); },         "5", "abc12", 20},
    {"abc",    0,    [](CData& d) { return d.Splice(99, 1, "-", 1); },         "4", "abc-", 16},
    {"abc",    16,   [](CData& d) { return d.Splice(1, 0, d.GetData(), 3); },  "6", "aabcbc", 16},
    {"abc",    9,    [](CData& d) { d.Splice(1, 0, nullptr, 1); d.GetData()[1] = '?'; },
                                                                  "", "a?bc", 9},
    {"abc",    0,    [](CData& d) { return d.Splice(1, 0, nullptr, 0xFFFFFFFF); },  "3", "abc", 3},
    {"abc",    30,   [](CData& d) { return d.SpliceDecimal(1, 1, -2147483647 - 1); },
                                                                  "13", "a-2147483648c", 30},
    {"abc",    0,    [](CData& d) { return d.SpliceByte(0, 1, '#'); },         "3", "#bc", 3},
    {"abc",    0,    [](CData& d) { return d.SpliceData(1, 1, Buffer("()")); },  "4", "a()c", 16},
    {"ab",     9,    [](CData& d) { return d.ByteAt(1) + 0; },                 "98", "ab", 9},
    {"ab",     9,    [](CData& d) { return d.ByteAt(2) + 0; },                 "0", "ab", 9},
    {"",       0,    [](CData& d) { return d.ByteAt(0) + 0; },                 "0", "", 0},
};
// clang-format on

TEST(CData, OperationsGiveTheirResults) {
  for (const TCase& c : kCases) {
    SCOPED_TRACE(testing::Message() << "row " << &c - kCases);
    CData data = Buffer(c.before, c.capacity_before);
    EXPECT_EQ(c.operation.run(data), c.result);
    EXPECT_EQ(AsText(data.Bytes()), c.after);
    EXPECT_EQ(data.GetCapacity(), c.capacity);
  }
}

TEST(CData, StaysAsItWasWithoutMemory) {
  const CData big = Buffer(std::string(100, 'x'));
  const test::TOperation<CData> operations[] = {
      [](CData& d) { EXPECT_FALSE(d.Reserve(100)); },
      [&](CData& d) { EXPECT_EQ(d.Set(big.GetData(), 100).length, 3U); },
      [&](CData& d) { d.Assign(big); },
      [&](CData& d) { EXPECT_EQ(d.Splice(1, 0, big.GetData(), 100), 3U); },
      [](CData& d) { EXPECT_EQ(d.Splice(1, 0, d.GetData(), 2), 3U); },
  };
  for (const auto& operation : operations) {
    CData data = Buffer("abc");
    const test::TAllocationFault fault(0);
    operation.run(data);
    EXPECT_EQ(fault.GetRequestCount(), 1U);
    EXPECT_EQ(AsText(data.Bytes()), "abc");
    EXPECT_EQ(data.GetCapacity(), 3U);
  }
}

TEST(CData, GrowsByOneByteWithinTheSteps) {
  CData data = Buffer("0");
  for (int i = 1; i < 300'000; ++i) data.SpliceByte(data.GetLength(), 0, static_cast<char>(i % 7));
  EXPECT_EQ(data.ByteAt(299'999), 299'999 % 7);
  EXPECT_EQ(data.GetCapacity() % 4096, 0U);
}

}  // namespace
}  // namespace zaf
