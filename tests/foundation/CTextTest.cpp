#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/CText.h"
#include "foundation/CTextLocal.h"
#include "foundation/TFixedText.h"
#include "tests/support/AllocationFault.h"

namespace zaf {
namespace {

TEST(CText, CountsTheNulAndAllocatesOnlyForCharacters) {
  CText text;
  CText roomy(TTextCapacity{99});
  CText only_nul("x");
  only_nul.FilterCharacters("x", CharacterFilter::kDrop);
  const test::TAllocationFault none(1'000'000);
  text = "";
  text = static_cast<const char*>(nullptr);
  text = only_nul;
  EXPECT_EQ(CText(text).GetLength() + CText('\0').GetLength() + text.GetLength(), 0U);
  for (int i = 0; i < 99; ++i) roomy.Append('x');
  EXPECT_EQ(none.GetRequestCount(), 0U);
  text.Append("ab");
  EXPECT_EQ(text.GetLength(), 3U);
  EXPECT_EQ(text.GetData()[2], 0);
}

TEST(CText, AssignsAndAppendsEveryKind) {
  CText text("x");
  text = 'a';
  text.Append('\0');
  text.Append(std::int32_t{-2147483647 - 1});
  text.Append(std::uint32_t{4294967295});
  EXPECT_EQ(text.View(), "a-21474836484294967295");
  text = std::int32_t{-7};
  text.Append(text);
  text.Append(text.View().substr(1));
  text = text.View().substr(1, 4);
  EXPECT_EQ(text.View(), "7-77");
}

TEST(CText, FoldsAsciiAndOneAccentedCapital) {
  CText text("aZ[\xC9\xE9");
  text.ToUpperCase();
  EXPECT_EQ(text.View(), "AZ[e\xE9");
  text = "aZ[\xC9\xE9";
  text.ToLowerCase();
  EXPECT_EQ(text.View(), "az[e\xE9");
  EXPECT_TRUE(CText("Hello") == "HELLO");
  EXPECT_TRUE(CText("\xC9") == CText("\xC9"));
  for (const char* other : {"e", "E", "\xE9", "", "\xC9\xC9"}) EXPECT_FALSE(CText("\xC9") == other);
}

TEST(CText, OrdersCStringsIgnoringCase) {
  const CText inner_nul(std::string_view("B\0x", 3));
  EXPECT_TRUE(CText("a") < inner_nul && inner_nul >= CText("b") && inner_nul <= CText("b"));
  EXPECT_TRUE(CText() < CText("a") && CText() >= CText("") && CText("b") > CText("Abc"));
  EXPECT_TRUE(CText("z") < CText("\xE9"));
}

TEST(CText, ComparesByTheFlag) {
  const CText text("abc");
  constexpr auto kIgnore = CaseSensitivity::kIgnore;
  constexpr auto kExact = CaseSensitivity::kExact;
  EXPECT_TRUE(text.Equals("ABC", kIgnore) && !text.Equals("ABC", kExact));
  EXPECT_TRUE(text.EqualsCharacters("abcd", 3, kIgnore));
  EXPECT_FALSE(text.EqualsCharacters("abcd", 3, kExact));  // No NUL behind them.
  EXPECT_TRUE(text.EqualsCharacters("abc", 3, kExact));
  EXPECT_TRUE(text.PrefixEquals("abcdef", 6, kExact) && !text.PrefixEquals("AB", 2, kExact));
  CData unterminated;
  unterminated.Set("ABC", 3);
  EXPECT_TRUE(text.EqualsData(unterminated));
}

TEST(CText, ReadsNumbersModulo32Bits) {
  const std::pair<const char*, std::uint32_t> cases[] = {
      {"12abc",      12        },
      {" \t\n+7",    7         },
      {"-1",         4294967295},
      {"4294967297", 1         },
      {"- 1",        0         },
  };
  for (const auto& [text, number] : cases) EXPECT_EQ(CText(text).ToNumber(), number) << text;
  EXPECT_EQ(CText("ab").GetFourCharCode(), FourCharCode{0x61620000});
}

TEST(CText, ReplacesAllFromTheLeft) {
  CText text("banana");
  text.ReplaceAll("", "x");
  text.ReplaceAll("a", "aa");
  EXPECT_EQ(text.View(), "baanaanaa");
  text.ReplaceAll("aa", text);  // Its own characters.
  EXPECT_EQ(text.View(), "bbaanaanaanbaanaanaanbaanaanaa");
  text = "aAe\xC9";
  text.ReplaceAllIgnoringCase("A", "");
  text.ReplaceAllIgnoringCase("E", "x");  // The accented one is no letter to match.
  EXPECT_EQ(text.View(), "x\xC9");
}

TEST(CText, HostilePatternsAndManyMatchesTakeLinearTime) {
  constexpr std::size_t kSize = 3'000'000;
  CText text(std::string(kSize, 'a'));
  const std::string repeated(kSize / 2, 'a');
  EXPECT_EQ(text.Find(repeated + "b"), kNoIndex);
  EXPECT_EQ(text.Find("b" + repeated, kSize, SearchDirection::kBackward), kNoIndex);
  EXPECT_EQ(text.FindIgnoringCase(repeated.substr(kSize / 4) + "b" + repeated.substr(kSize / 4)),
            kNoIndex);
  text.ReplaceAll("a", "bc");
  EXPECT_EQ(text.GetCharacterCount(), 2 * kSize);
  EXPECT_TRUE(text.View().ends_with("bcbc"));
}

TEST(CText, CopiesOutTerminated) {
  const CText text("abcdef");
  char out[8] = "#######";
  EXPECT_EQ(text.CopyOut(out, 4), 3U);
  EXPECT_STREQ(out, "abc");
  EXPECT_EQ(text.CopyOutRange(out, 8, 2, 3), 3U);
  EXPECT_STREQ(out, "cde");
  EXPECT_EQ(text.CopyOutPrefixed(out, 5), 4U);
  EXPECT_EQ(std::string_view(out, 5), std::string_view("\3abc\0", 5));
  EXPECT_EQ(CText().CopyOutPrefixed(out, 8), 0U);
  EXPECT_EQ(out[0], 0);
  char name[300];
  EXPECT_EQ(CText(std::string(280, 'x')).CopyOutPrefixed(name, sizeof name), 256U);
  EXPECT_EQ(name[0], '\xFF');
  EXPECT_EQ(text.CopyOut(nullptr, 8) + text.CopyOutPrefixed(nullptr, 8) + text.CopyOut(out, 0), 0U);
}

TEST(CText, StaysTerminatedWhateverIsSplicedAndCut) {
  CText text("abcdefghijklmnopqrstuvwxyz0123456789");
  EXPECT_TRUE(text.Reserve(4));
  EXPECT_EQ(text.View(), "abc");
  text.Splice(3, 1, "def", 3);  // Over the NUL.
  EXPECT_EQ(text.View(), "abcdef");
  text.SpliceText(1, 4, "-");
  text.SpliceDecimal(1, 1, -5);
  text.SpliceByte(0, 0, '(');
  EXPECT_EQ(text.View(), "(a-5f");
  CData bytes;
  bytes.Set("xyz", 3);
  text.Assign(bytes);
  EXPECT_STREQ(text.GetCString(), "xy");
  CText empty;
  empty.SpliceText(9, 9, text);
  text.Extract(text, 1, 9);
  EXPECT_EQ(empty.View(), "xy");
  EXPECT_EQ(text.View(), "y");
}

TEST(CText, TrimsFiltersAndCuts) {
  const struct {
    const char* before;
    void (*change)(CText&);
    const char* after;
  } cases[] = {
      {" \t a ",  [](CText& t) { t.TrimStart(TrimSet::kSpaces); },                       "\t a " },
      {" \t a ",  [](CText& t) { t.TrimStart(TrimSet::kWhiteSpace); },                   "a "    },
      {" a\r\n ", [](CText& t) { t.TrimEnd(TrimSet::kSpaces); },                         " a\r\n"},
      {" a\r\n ", [](CText& t) { t.TrimEnd(TrimSet::kWhiteSpace); },                     " a"    },
      {"a1b\xE9", [](CText& t) { t.FilterCharacters("1\xE9", CharacterFilter::kKeep); }, "1\xE9" },
      {"a1b2",    [](CText& t) { t.FilterCharacters("12", CharacterFilter::kDrop); },    "ab"    },
      {"abcd",    [](CText& t) { t.SubstringInPlace(3, 4); },                            "d"     },
      {"abcd",    [](CText& t) { t.SubstringInPlace(5, 1); },                            "abcd"  },
      {"abcd",    [](CText& t) { t = t.Left(2); },                                       "ab"    },
      {"'a'",     [](CText& t) { t.Unquote(); },                                         "a"     },
      {"\"\"",    [](CText& t) { t.Unquote(); },                                         ""      },
  };
  for (const auto& c : cases) {
    CText text(c.before);
    c.change(text);
    EXPECT_STREQ(text.GetCString(), c.after);
  }
}

TEST(CText, WrapsWordsAtTheNearestBlank) {
  const struct {
    std::uint32_t width;
    const char *before, *after;
  } cases[] = {
      {10, "aaaa bbbb cccc",     "aaaa bbbb\rcccc"    },
      {10, "aaaa bbbbb cccc",    "aaaa\rbbbbb\rcccc"  },
      {10, "aaaaaaaaaaaa bb cc", "aaaaaaaaaaaa\rbb cc"},
      {10, "aaaa\nbbbb cccc",    "aaaa\nbbbb cccc"    },
      {10, "aa\tb",              "aa\rb"              },
      {11, "a\tb c",             "a\tb\rc"            },
  };
  for (const auto& c : cases) {
    CText text(c.before);
    text.WordWrap(c.width);
    EXPECT_EQ(text.View(), c.after);
  }
}

TEST(CTextLocal, RefusesWhatDoesNotFit) {
  const std::string fits(30, 'x');
  CTextLocal<31> text(fits);
  text.Assign(fits + "y");
  EXPECT_EQ(text.View(), fits);  // Full: no room for the extra NUL either.
  text = "abc";
  text.Assign(fits + "y");
  EXPECT_EQ(text.GetLength(), 5U);
  EXPECT_STREQ(text.GetCString(), "abc");
  text = CText("abc");
  text.Assign(CText(std::string_view(fits + "y")));
  text.Append(fits);
  EXPECT_EQ(text.GetLength(), 4U);
  text = "aaaa";
  text.ReplaceAll("a", "0123456789");  // Room for two.
  EXPECT_EQ(text.View(), "01234567890123456789aa");
  text.Reserve(3);
  EXPECT_EQ(text.View(), "01");
}

TEST(CTextLocal, OnlyStorageOfTheHeapMoves) {
  CTextLocal<63> local("abc");
  CText text = std::move(local);
  EXPECT_EQ(text.View(), "abc");
  EXPECT_TRUE(local.IsEmpty());  // NOLINT(bugprone-use-after-move)
  const char* storage = text.GetData();
  CText next("old");
  next = std::move(text);
  EXPECT_EQ(next.GetData(), storage);
  static_cast<CText&>(local) = std::move(next);
  EXPECT_EQ(local.View(), "abc");
  EXPECT_EQ(local.GetCapacity(), 63U);
}

TEST(TFixedText, CutsAndFillsItsSlot) {
  TFixedText<4> text{};
  text.Set("abcdef");
  EXPECT_EQ(text.View(), "abc");
  text.Set("x");
  EXPECT_EQ(std::string_view(text.bytes, 4), std::string_view("x\0\0\0", 4));
  std::memcpy(text.bytes, "full", 4);
  EXPECT_EQ(text.View(), "full");
}

}  // namespace
}  // namespace zaf
