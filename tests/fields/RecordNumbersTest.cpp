#include <cstring>
#include <gtest/gtest.h>

#include "fields/PartCodec.h"
#include "fields/ValueCodecs.h"

namespace zaf {
namespace {

struct TInner {
  std::uint8_t flag;
  std::uint8_t carried[3];
  FourCharCode code;

  static std::span<const TProperty> Properties() {
    static constexpr TProperty kRows[] = {
        Attribute<&TInner::flag>(kNoCode, "Flag"),
        Attribute<&TInner::code>(kNoCode, "Code"),
    };
    return kRows;
  }
};

struct TOuter {
  TFixedText<4> text;
  std::int32_t number;
  TInner inner;

  static std::span<const TProperty> Properties() {
    static constexpr TProperty kRows[] = {
        Attribute<&TOuter::text>(kNoCode, "Text"),
        Attribute<&TOuter::number>(kNoCode, "Number"),
        Part<&TOuter::inner>("Inner"),
    };
    return kRows;
  }
};

// Holds on hosts of either byte order.
TEST(RecordNumbers, AreBigEndianInTheFileAndTheHostsInMemory) {
  constexpr char kFromFile[] = "abc\0\xFE\xDC\xBA\x98\x01xyzcode";
  TOuter record;
  static_assert(sizeof record == sizeof kFromFile - 1);
  std::memcpy(&record, kFromFile, sizeof record);
  const TRecordNumbers numbers(TOuter::Properties(), &record);
  numbers.ConvertByteOrder(&record);
  EXPECT_EQ(record.text.View(), "abc");
  EXPECT_EQ(record.number, -0x01234568);
  EXPECT_EQ(record.inner.flag, 1);
  EXPECT_EQ(record.inner.code, Code("code"));
  numbers.ConvertByteOrder(&record);
  EXPECT_EQ(std::memcmp(&record, kFromFile, sizeof record), 0);
}

}  // namespace
}  // namespace zaf
