#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/CCookie.h"
#include "foundation/CText.h"
#include "foundation/CTextLocal.h"
#include "foundation/TFixedText.h"
#include "tests/foundation/Cases.h"
#include "tests/support/AllocationFault.h"

namespace zaf {
namespace {

using namespace std::string_view_literals;

constexpr auto kIgnore = CaseSensitivity::kIgnore;
constexpr auto kExact = CaseSensitivity::kExact;
constexpr auto kBackward = SearchDirection::kBackward;
constexpr const char* kNull = nullptr;

CData Buffer(std::string_view bytes) {
  CData data;
  data.Set(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  return data;
}

using TCopy = std::uint32_t (CText::*)(void*, std::uint32_t) const;
using TCopyRange = std::uint32_t (CText::*)(void*, std::uint32_t, std::uint32_t,
                                            std::uint32_t) const;
constexpr TCopy kOut = &CText::CopyOut, kPrefixed = &CText::CopyOutPrefixed;
constexpr TCopyRange kOutRange = &CText::CopyOutRange,
                     kPrefixedRange = &CText::CopyOutRangePrefixed;

/// The bytes of a destination of `size` bytes after a copy, NULs as "|", and the result.
template <class Copy, class... Range>
std::string Copied(const CText& text, Copy copy, std::uint32_t size, Range... range) {
  std::string out(size, '.');
  const std::uint32_t result = (text.*copy)(out.data(), size, range...);
  std::replace(out.begin(), out.end(), '\0', '|');
  return out + std::to_string(result);
}

std::string Number(const CText& text) { return std::to_string(text.ToNumber()); }

struct TCase {
  std::string_view before;
  test::TOperation<CText> operation;
  std::string_view result, after;
};

// clang-format off
const TCase kCases[] = {
    {"ab",     [](CText& t) { return t.GetLength(); },                              "3", "ab"},
    {"ab",     [](CText& t) { return t.GetCharacterCount(); },                      "2", "ab"},
    {"ab",     [](CText& t) { t.Clear(); return t.IsEmpty(); },                     "1", ""},
    {"ab",     [](CText& t) { t.Release(); return t.GetLength(); },                 "0", ""},
    {"ab",     [](CText& t) { return t.ByteAt(1) + t.ByteAt(2) + t.ByteAt(9); },    "98", "ab"},
    {"ab",     [](CText& t) { return std::string(t.begin(), t.end()); },            "ab", "ab"},
    {"abcd",   [](CText& t) { t.Reserve(60); return t.Reserve(3); },                "1", "ab"},
    // Comparing
    {"aB",     [](CText& t) { return t.EqualsBytes("Ab", 2); },                     "1", "aB"},
    {"aB",     [](CText& t) { return t.EqualsBytes("Ab", 1); },                     "0", "aB"},
    {"aB",     [](CText& t) { return t.EqualsBytes(kNull, 2); },                    "0", "aB"},
    {"",       [](CText& t) { return t.EqualsBytes(kNull, 0); },                    "1", ""},
    {"aB",     [](CText& t) { return t.EqualsData(Buffer("AB")); },                 "1", "aB"},
    {"aB",     [](CText& t) { return t.EqualsData(CText("b")); },                   "0", "aB"},
    {"Hello",  [](CText& t) { return t == "HELLO"; },                               "1", "Hello"},
    {"a",      [](CText& t) { return t == kNull; },                                 "0", "a"},
    {"",       [](CText& t) { return t == kNull; },                                 "1", ""},
    {"\xC9",   [](CText& t) { return t == "\xC9"; },                                "1", "\xC9"},
    {"\xC9",   [](CText& t) { return t == "e" || t == "E" || t == "\xE9"; },        "0", "\xC9"},
    {"abc",    [](CText& t) { return t.Equals("ABC", kIgnore); },                   "1", "abc"},
    {"abc",    [](CText& t) { return t.Equals("ABC", kExact); },                    "0", "abc"},
    {"abc",    [](CText& t) { return t.EqualsCharacters("ABCd", 3, kIgnore); },     "1", "abc"},
    {"abc",    [](CText& t) { return t.EqualsCharacters("abcd", 3, kExact); },      "0", "abc"},
    {"abc",    [](CText& t) { return t.EqualsCharacters("abc", 3, kExact); },       "1", "abc"},
    {"abc",    [](CText& t) { return t.EqualsCharacters("abc", 2, kIgnore); },      "0", "abc"},
    {"abc",    [](CText& t) { return t.EqualsCharacters(kNull, 0, kExact); },       "0", "abc"},
    {"",       [](CText& t) { return t.EqualsCharacters(kNull, 3, kExact); },       "1", ""},
    {"abc",    [](CText& t) { return t.PrefixEquals("abcdef", 6, kExact); },        "1", "abc"},
    {"abcd",   [](CText& t) { return t.PrefixEquals("ABC", 3, kIgnore); },          "1", "abcd"},
    {"abcd",   [](CText& t) { return t.PrefixEquals("ABC", 3, kExact); },           "0", "abcd"},
    {"abc",    [](CText& t) { return t.PrefixEquals("abd", 3, kExact); },           "0", "abc"},
    {"abc",    [](CText& t) { return t.PrefixEquals(kNull, 3, kExact); },           "0", "abc"},
    {"",       [](CText& t) { return t.PrefixEquals(kNull, 0, kExact); },           "1", ""},
    {"b\0x"sv, [](CText& t) { return t >= CText("B") && CText("B") >= t; },         "1", "b\0x"sv},
    {"b",      [](CText& t) { return CText("Abc") < t && t < CText("\xE9"); },      "1", "b"},
    {"b",      [](CText& t) { return t < CText() || t < CText("B"); },              "0", "b"},
    {"",       [](CText& t) { return t < CText("a") && t >= CText(""); },           "1", ""},
    // Setting, assigning and appending
    {"old",    [](CText& t) { return t.Set("ab", 2).length; },                      "3", "ab"},
    {"old",    [](CText& t) { return t.Set("ab", 2).data; },                        "ab", "ab"},
    {"old",    [](CText& t) { return t.Set("", 0).length; },                        "0", ""},
    {"old",    [](CText& t) { return t.Set(kNull, 2).length; },                     "0", "old"},
    {"abcd",   [](CText& t) { return t.Set(t.GetData() + 1, 2).length; },           "3", "bc"},
    {"old",    [](CText& t) { t.Assign(CText("ab")); },                             "", "ab"},
    {"old",    [](CText& t) { t.Assign(Buffer("xyz")); },                           "", "xy"},
    {"old",    [](CText& t) { t.Assign(""); },                                      "", ""},
    {"old",    [](CText& t) { t.Assign(kNull); },                                   "", ""},
    {"old",    [](CText& t) { t = 'a'; },                                           "", "a"},
    {"old",    [](CText& t) { t = '\0'; },                                          "", ""},
    {"old", [](CText& t) { t = std::int32_t{-2147483647 - 1}; }, "", "-2147483648"},
    {"old", [](CText& t) { t = std::uint32_t{4294967295}; }, "", "4294967295"},
    {"a-77b",  [](CText& t) { t = t.View().substr(1, 3); },                         "", "-77"},
    {"",       [](CText& t) { t.Append("ab"); return t.GetLength(); },              "3", "ab"},
    {"a",      [](CText& t) { t.Append(t); t.Append(CText("b")); },                 "", "aab"},
    {"a",      [](CText& t) { t.Append(kNull); t.Append('\0'); t.Append('b'); },    "", "ab"},
    {"a",      [](CText& t) { t.Append(std::int32_t{-7}); t.Append(7U); },          "", "a-77"},
    // Copying out
    {"abcdef", [](CText& t) { return Copied(t, kOut, 4); },                   "abc|3", "abcdef"},
    {"ab",     [](CText& t) { return Copied(t, kOut, 4); },                   "ab|.2", "ab"},
    {"ab",     [](CText& t) { return Copied(t, kOut, 0); },                   "0", "ab"},
    {"abcdef", [](CText& t) { return Copied(t, kOutRange, 5, 2U, 3U); },      "cde|.3", "abcdef"},
    {"ab",     [](CText& t) { return Copied(t, kOutRange, 2, 2U, 3U); },      "|.0", "ab"},
    {"abcdef", [](CText& t) { return Copied(t, kPrefixed, 5); },              "\3abc|4", "abcdef"},
    {"abcdef", [](CText& t) { return Copied(t, kPrefixedRange, 6, 4U, 9U); }, "\2ef|..3", "abcdef"},
    {"",       [](CText& t) { return Copied(t, kPrefixed, 3); },              "||.0", ""},
    {"ab",     [](CText& t) { return t.CopyOut(nullptr, 9); },                "0", "ab"},
    {"ab",     [](CText& t) { return t.CopyOutPrefixed(nullptr, 9); },        "0", "ab"},
    {"abcdef", [](CText& t) { t.Extract(t, 2, 9); },                                "", "cdef"},
    {"old",    [](CText& t) { CText("abcdef").Extract(t, 2, 3); },                  "", "cde"},
    {"old",    [](CText& t) { CText("abc").Extract(t, 3, 1); },                     "", ""},
    {"old",    [](CText& t) { CText("ab").AssignTo(t); },                           "", "ab"},
    // Splicing
    {"",       [](CText& t) { return t.Splice(7, 3, "ab", 2); },                    "3", "ab"},
    {"abcd",   [](CText& t) { return t.Splice(1, 2, "-", 1); },                     "4", "a-d"},
    {"abc",    [](CText& t) { return t.Splice(3, 1, "def", 3); },                   "7", "abcdef"},
    {"abcdef", [](CText& t) { return t.Splice(1, 9, "-", 1); },                     "3", "a-"},
    {"abc",    [](CText& t) { return t.SpliceByte(1, 1, '-'); },                    "4", "a-c"},
    {"abc",    [](CText& t) { return t.SpliceDecimal(1, 1, -25); },                 "6", "a-25c"},
    {"abc",    [](CText& t) { return t.SpliceData(1, 1, Buffer("()")); },           "5", "a()c"},
    {"abc",    [](CText& t) { t.SpliceText(1, 1, "()"); },                          "", "a()c"},
    {"",       [](CText& t) { t.SpliceText(9, 9, "ab"); },                          "", "ab"},
    // Replacing and searching
    {"banana", [](CText& t) { t.ReplaceAll("a", "aa"); }, "", "baanaanaa"},
    {"banana", [](CText& t) { t.ReplaceAll("", "x"); },                             "", "banana"},
    {"banana", [](CText& t) { t.ReplaceAll(kNull, "x"); t.ReplaceAll("a", kNull); },  "", "banana"},
    {"aba",    [](CText& t) { t.ReplaceAll("a", t); },                              "", "abababa"},
    {"aAe\xC9", [](CText& t) { t.ReplaceAllIgnoringCase("A", ""); },                "", "e\xC9"},
    {"aAe\xC9", [](CText& t) { t.ReplaceAllIgnoringCase("E", "x"); },               "", "aAx\xC9"},
    {"banana", [](CText& t) { t.ReplaceOccurrence("an", "AN", 2, kExact); },        "", "banANa"},
    {"banana", [](CText& t) { t.ReplaceOccurrence("an", "-", 0, kExact); },         "", "banana"},
    {"banana", [](CText& t) { t.ReplaceOccurrence("", "-", 1, kExact); },           "", "banana"},
    {"banana", [](CText& t) { return t.Find("an", 99); },                           "-1", "banana"},
    {"banana", [](CText& t) { return t.Find("", 6); },                              "6", "banana"},
    {"banana", [](CText& t) { return t.Find(kNull); },                              "-1", "banana"},
    {"ana",    [](CText& t) { return t.FindIgnoringCase(kNull); },                  "-1", "ana"},
    // Changing
    {"aZ[\xC9\xE9", [](CText& t) { t.ToUpperCase(); },                              "", "AZ[e\xE9"},
    {"aZ[\xC9\xE9", [](CText& t) { t.ToLowerCase(); },                              "", "az[e\xE9"},
    {" \ta ",  [](CText& t) { t.TrimStart(TrimSet::kSpaces); },                     "", "\ta "},
    {" \ta ",  [](CText& t) { t.TrimStart(TrimSet::kWhiteSpace); },                 "", "a "},
    {" a\r\n ", [](CText& t) { t.TrimEnd(TrimSet::kSpaces); },                      "", " a\r\n"},
    {" a\r\n ", [](CText& t) { t.TrimEnd(TrimSet::kWhiteSpace); },                  "", " a"},
    {"  ",     [](CText& t) { t.TrimEnd(TrimSet::kSpaces); },                       "", ""},
    {"a1b\xE9", [](CText& t) { t.FilterCharacters("1\xE9", CharacterFilter::kKeep); }, "", "1\xE9"},
    {"a1b2",   [](CText& t) { t.FilterCharacters("12", CharacterFilter::kDrop); },  "", "ab"},
    {"a1b2",   [](CText& t) { t.FilterCharacters(kNull, CharacterFilter::kKeep); }, "", "a1b2"},
    {"abcd",   [](CText& t) { t.SubstringInPlace(1, 2); },                          "", "bc"},
    {"abcd",   [](CText& t) { t.SubstringInPlace(3, 4); },                          "", "d"},
    {"abcd",   [](CText& t) { t.SubstringInPlace(4, 1); },                          "", ""},
    {"abcd",   [](CText& t) { t.SubstringInPlace(5, 1); t.SubstringInPlace(0, 5); },  "", "abcd"},
    {"abcd",   [](CText& t) { return t.Left(2) == "ab"; },                          "1", "abcd"},
    {"abcd",   [](CText& t) { return t.Left(9) == "abcd"; },                        "1", "abcd"},
    {"'a'",    [](CText& t) { const bool is = t.IsQuoted(); t.Unquote(); return is; },  "1", "a"},
    {"\"\"",   [](CText& t) { t.Unquote(); },                                       "", ""},
    {"'a\"",   [](CText& t) { t.Unquote(); return t.IsQuoted(); },                  "0", "'a\""},
    {"'",      [](CText& t) { t.Unquote(); return t.IsQuoted(); },                  "0", "'"},
    {"aaaa bbbb cccc",     [](CText& t) { t.WordWrap(10); },    "", "aaaa bbbb\rcccc"},
    {"aaaa bbbbb cccc",    [](CText& t) { t.WordWrap(10); },    "", "aaaa\rbbbbb\rcccc"},
    {"aaaaaaaaaaaa bb cc", [](CText& t) { t.WordWrap(10); },    "", "aaaaaaaaaaaa\rbb cc"},
    {"aaaa\nbbbb cccc",    [](CText& t) { t.WordWrap(10); },    "", "aaaa\nbbbb cccc"},
    {"aa\tb",              [](CText& t) { t.WordWrap(10); },    "", "aa\rb"},
    {"a\tb c",             [](CText& t) { t.WordWrap(11); },    "", "a\tb\rc"},
    // Numbers
    {"12abc",      [](CText& t) { return Number(t); },  "12", "12abc"},
    {" \t\n+7",    [](CText& t) { return Number(t); },  "7", " \t\n+7"},
    {"-1",         [](CText& t) { return Number(t); },  "4294967295", "-1"},
    {"4294967297", [](CText& t) { return Number(t); },  "1", "4294967297"},
    {"- 1",        [](CText& t) { return Number(t); },  "0", "- 1"},
    {"rslt!",      [](CText& t) { return t.GetFourCharCode() == Code("rslt"); },  "1", "rslt!"},
    {"ab", [](CText& t) { return t.GetFourCharCode() == FourCharCode{0x61620000}; }, "1", "ab"},
    {"",           [](CText& t) { return t.GetFourCharCode() == kNoCode; },  "1", ""},
};
// clang-format on

TEST(CText, OperationsGiveTheirResults) {
  for (const TCase& c : kCases) {
    CText text;
    CCookie cookie;
    CTextLocal<63> local;
    for (CText* const each : {&text, static_cast<CText*>(&cookie), static_cast<CText*>(&local)}) {
      SCOPED_TRACE(testing::Message() << "row " << &c - kCases << ": " << c.before);
      each->Assign(c.before);
      EXPECT_EQ(c.operation.run(*each), c.result);
      EXPECT_EQ(each->View(), c.after);
      EXPECT_EQ(each->GetCString()[each->GetCharacterCount()], 0);
    }
    EXPECT_EQ(local.GetCapacity(), 63U);
  }
}

TEST(CText, StaysTerminatedWhicheverRequestForMemoryFails) {
  for (const TCase& c : kCases) {
    std::uint64_t requests = 1;
    for (std::uint64_t failing = 0; failing < requests; ++failing) {
      CText text(c.before);
      const test::TAllocationFault fault(failing);
      c.operation.run(text);
      EXPECT_EQ(text.GetCString()[text.GetCharacterCount()], 0) << "row " << &c - kCases;
      EXPECT_GE(text.GetCapacity(), text.GetLength());
      requests = fault.GetRequestCount();
    }
  }
}

TEST(CText, CapacitiesFollowTheRules) {
  const test::TAllocationFault none(1'000'000);
  CText text;
  text = "";
  text = kNull;
  EXPECT_EQ(CText(text).GetCapacity() + CText('\0').GetCapacity() + text.GetCapacity(), 0U);
  EXPECT_EQ(none.GetRequestCount(), 0U);
  CText reserved(TTextCapacity{99});
  EXPECT_EQ(reserved.GetCapacity(), 100U);
  reserved.Append("ab");  // Assigns, which shrinks.
  EXPECT_EQ(reserved.GetCapacity(), 3U);
  reserved.Append('c');
  EXPECT_EQ(reserved.GetCapacity(), 16U);
  reserved.Append("0123456789abc");
  EXPECT_EQ(reserved.GetCapacity(), 32U);
}

TEST(CText, ManyMatchesTakeLinearTime) {
  constexpr std::size_t kSize = 3'000'000;
  CText text(std::string(kSize, 'a'));
  text.ReplaceAll("a", "bc");
  EXPECT_EQ(text.GetCharacterCount(), 2 * kSize);
  EXPECT_TRUE(text.View().ends_with("bcbc"));
}

TEST(CText, PrefixCountsAtMost255Characters) {
  char out[300];
  EXPECT_EQ(CText(std::string(280, 'x')).CopyOutPrefixed(out, sizeof out), 256U);
  EXPECT_EQ(out[0], '\xFF');
}

TEST(CText, FailedSetAddsANul) {
  CText text("abc");
  EXPECT_TRUE(text.Reserve(20));
  const std::string long_text(100, 'x');
  const test::TAllocationFault fault(0);
  EXPECT_EQ(text.Set(long_text.data(), 100).length, 5U);
  EXPECT_EQ(text.View(), "abc\0"sv);
}

TEST(CTextLocal, RefusesWhatDoesNotFit) {
  const std::string fits(30, 'x');
  CTextLocal<31> text(fits);
  text.Assign(fits + "y");
  EXPECT_EQ(text.View(), fits);  // Full: no space for the extra NUL either.
  text = "abc";
  text.Assign(fits + "y");
  EXPECT_EQ(text.View(), "abc\0"sv);
  text = CText("abc");
  text.Assign(CText(std::string_view(fits + "y")));
  text.Append(fits);
  EXPECT_EQ(text.GetLength(), 4U);
  text = "aaaa";
  text.ReplaceAll("a", "0123456789");  // Two fit.
  EXPECT_EQ(text.View(), "01234567890123456789aa");
  EXPECT_TRUE(text.Reserve(3) && !text.Reserve(32));
  EXPECT_EQ(text.View(), "01");
  CTextLocal<255> copy(CText("a"));
  copy.Release();
  EXPECT_EQ(copy.GetLength() + CTextLocal<31>(text).GetLength(), 3U);
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
  EXPECT_TRUE(text.IsEmpty());
  text.Set("abcdef");
  EXPECT_EQ(text.View(), "abc");
  text.Set("x");
  EXPECT_EQ(std::string_view(text.bytes, 4), "x\0\0\0"sv);
  std::memcpy(text.bytes, "full", 4);
  EXPECT_EQ(text.View(), "full");
}

}  // namespace
}  // namespace zaf
