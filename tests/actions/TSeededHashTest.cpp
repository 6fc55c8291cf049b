#include <gtest/gtest.h>
#include <set>
#include <string>

#include "actions/TSeededHash.h"

namespace zaf {
namespace {

TEST(SeededHash, EveryByteAndTheLengthCount) {
  std::set<std::size_t> hashes;
  std::size_t count = 0;
  for (std::size_t size = 0; size <= 50; ++size) {
    std::string text(size, '\0');
    hashes.insert(TSeededHash()(text));
    ++count;
    for (char& c : text) {
      c = 1;
      hashes.insert(TSeededHash()(text));
      c = 0;
      ++count;
    }
  }
  EXPECT_EQ(hashes.size(), count);
}

TEST(SeededHash, OrderAndBoundsOfTextsCount) {
  const auto hash = [](std::string_view first, std::string_view second) {
    return TSeededHash::Extend(TSeededHash::Extend(0, first), second);
  };
  const std::set<std::uint64_t> hashes{hash("ab", ""), hash("a", "b"), hash("", "ab"),
                                       hash("b", "a")};
  EXPECT_EQ(hashes.size(), 4U);
  EXPECT_EQ(hash("a", "b"), hash("a", "b"));
}

}  // namespace
}  // namespace zaf
