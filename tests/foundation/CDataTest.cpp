#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "foundation/CData.h"
#include "tests/support/AllocationFault.h"

namespace zaf {
namespace {

CData Buffer(std::string_view bytes) {
  CData data;
  data.Set(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  return data;
}

std::string Text(const CData& data) { return std::string(AsText(data.Bytes())); }

struct CapacityCase {
  const char* name;
  std::uint32_t first, second, capacity;
};

constexpr CapacityCase kCapacityCases[] = {
    {"FirstIsExact",         0,    100,  100  },
    {"GrowsIntoMultiple",    100,  101,  112  },
    {"GrowsBehindMultiple",  100,  112,  128  },
    {"SmallStepsUpTo4096",   4096, 4097, 4112 },
    {"PagesFrom4097",        4097, 4098, 8192 },
    {"WholePage",            4500, 8192, 12288},
    {"SlackOf31Stays",       100,  69,   100  },
    {"SlackOf32Shrinks",     100,  68,   68   },
    {"ZeroFrees",            100,  0,    0    },
    {"ZeroWithinSlackStays", 31,   0,    31   },
};

class CDataCapacity : public testing::TestWithParam<CapacityCase> {};

TEST_P(CDataCapacity, FollowsTheRule) {
  CData data;
  EXPECT_TRUE(data.Reserve(GetParam().first) && data.Reserve(GetParam().second));
  EXPECT_EQ(data.GetCapacity(), GetParam().capacity);
  EXPECT_EQ(data.GetData() == nullptr, GetParam().capacity == 0);
}

INSTANTIATE_TEST_SUITE_P(Cases, CDataCapacity, testing::ValuesIn(kCapacityCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(CData, SetTakesTheHintAndItsOwnBytes) {
  CData data;
  EXPECT_EQ(data.Set("abcdef", 6, 20), 6U);
  EXPECT_EQ(data.GetCapacity(), 20U);
  EXPECT_EQ(data.Set(data.GetData() + 2, 3, 1000), 3U);
  EXPECT_EQ(data.GetCapacity(), 20U);
  EXPECT_EQ(Text(data), "cde");
  EXPECT_EQ(data.Set(data.GetData() + 19, 5), 1U);  // Ends with the storage.
  EXPECT_EQ(data.Set(nullptr, 50), 50U);
  EXPECT_TRUE(data.Reserve(7));
  EXPECT_EQ(data.GetLength(), 7U);
}

TEST(CData, SpliceReplacesARange) {
  CData data;
  EXPECT_EQ(data.Splice(7, 3, "abc", 3), 3U);  // Sets, whatever the position.
  data.SpliceDecimal(1, 1, -2147483647 - 1);
  data.SpliceByte(0, 1, '#');
  data.SpliceData(1, 1, Buffer("()"));
  EXPECT_EQ(Text(data), "#()2147483648c");
  EXPECT_EQ(data.Splice(1, 0, data.GetData(), 14), 28U);  // Its own bytes, which move.
  EXPECT_EQ(Text(data), "##()2147483648c()2147483648c");
  EXPECT_EQ(data.Splice(1, 99, "", 0), 1U);
  data.Splice(99, 99, "-", 1);
  EXPECT_EQ(Text(data), "#-");
}

TEST(CData, GrowsByOneByteWithinTheSteps) {
  CData data = Buffer("0");
  for (int i = 1; i < 300'000; ++i) data.SpliceByte(data.GetLength(), 0, static_cast<char>(i % 7));
  EXPECT_EQ(data.ByteAt(299'999), 299'999 % 7);
  EXPECT_EQ(data.GetCapacity() % 4096, 0U);
}

TEST(CData, CopiesRangesOut) {
  CData data = Buffer("abcdef");
  char out[4] = {};
  EXPECT_EQ(data.CopyOut(out, 4), 4U);
  EXPECT_EQ(data.CopyOutRange(out, 4, 4, 9), 2U);
  EXPECT_EQ(std::string_view(out, 4), "efcd");
  EXPECT_EQ(data.CopyOutRange(out, 4, 6, 1) + data.CopyOut(nullptr, 4) + CData().CopyOut(out, 4),
            0U);
  CData target = Buffer("old");
  data.Extract(target, 9, 1);
  EXPECT_EQ(target.GetLength(), 0U);
  data.AssignTo(target);
  EXPECT_TRUE(target.EqualsData(data));
  data.Extract(data, 2, 99);
  EXPECT_EQ(Text(data), "cdef");
}

TEST(CData, ComparesAndReadsBytes) {
  const CData data = Buffer("ab");
  EXPECT_TRUE(data.EqualsBytes("ab", 2) && CData().EqualsBytes(nullptr, 0));
  EXPECT_FALSE(data.EqualsBytes("aB", 2) || data.EqualsBytes(nullptr, 2));
  EXPECT_EQ(data.ByteAt(1), 'b');
  EXPECT_EQ(data.ByteAt(2) + CData().ByteAt(0), 0);
}

TEST(CData, StaysAsItWasWithoutMemory) {
  CData data = Buffer("abc");
  const CData big = Buffer(std::string(100, 'x'));
  const auto expect_failure = [&](auto&& operation) {
    const test::TAllocationFault fault(0);
    operation();
    EXPECT_EQ(fault.GetRequestCount(), 1U);
    EXPECT_EQ(Text(data), "abc");
    EXPECT_EQ(data.GetCapacity(), 3U);
  };
  expect_failure([&] { EXPECT_FALSE(data.Reserve(100)); });
  expect_failure([&] { EXPECT_EQ(data.Set(big.GetData(), 100), 3U); });
  expect_failure([&] { data.Assign(big); });
  expect_failure([&] { EXPECT_EQ(data.Splice(1, 0, big.GetData(), 100), 3U); });
  expect_failure([&] { EXPECT_EQ(data.Splice(1, 0, data.GetData(), 2), 3U); });
  EXPECT_FALSE(data.Reserve(0xFFFFFFFF));
  EXPECT_EQ(data.Splice(1, 0, nullptr, 0xFFFFFFFF), 3U);
}

}  // namespace
}  // namespace zaf
