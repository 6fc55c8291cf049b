#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tuple>

#include "foundation/CData.h"
#include "foundation/CText.h"
#include "foundation/CTextPtrArray.h"
#include "foundation/Heap.h"
#include "foundation/TDataFile.h"
#include "tests/foundation/TTestDirectory.h"
#include "tests/support/AllocationFault.h"

namespace zaf {
namespace {

using namespace std::string_view_literals;
using test::TTestDirectory;
using testing::ElementsAre;

constexpr FourCharCode kCode = Code("test");

std::uint32_t Length(std::string_view text) { return static_cast<std::uint32_t>(text.size()); }

/// The result of reading `count` bytes at the current position; "!" on failure.
std::string Take(TDataFile& file, std::uint32_t count) {
  std::string bytes(count, '?');
  return file.Read(count, bytes.data()) == Status::kOk ? bytes : "!";
}

Status Put(TDataFile& file, std::string bytes) { return file.Write(Length(bytes), bytes.data()); }

class Scrambling : public testing::TestWithParam<bool> {};

TEST_P(Scrambling, SectionsSurviveTheDisk) {
  const TTestDirectory directory;
  TDataFile file;
  file.SetScrambled(GetParam());
  ASSERT_EQ(file.Open(directory.Name("f"), TOpenMode::kCreate), Status::kOk);
  CTextPtrArray list;
  for (const char* text : {"x", "", "yz"}) list.Append(text);
  std::uint32_t written[6] = {};
  EXPECT_EQ(file.WriteInteger(kCode, 0, written[0], 1), Status::kOk);
  EXPECT_EQ(file.WriteText(kCode, 4, written[1], "ab", TextEnd::kWithNul), Status::kOk);
  EXPECT_EQ(file.WriteText(kCode, 7, written[2], "cd", TextEnd::kWithoutNul), Status::kOk);
  EXPECT_EQ(file.WriteTextList(kCode, 9, written[3], list), Status::kOk);
  EXPECT_EQ(file.WriteBlock(kCode, 19, written[4], CText("E")), Status::kOk);
  EXPECT_EQ(file.WriteText(kCode, 21, written[5], "", TextEnd::kWithoutNul), Status::kOk);
  EXPECT_THAT(written, ElementsAre(4, 3, 2, 10, 2, 0));
  EXPECT_EQ(file.GetSize(), 21U);
  EXPECT_EQ(file.Flush(), Status::kOk);
  EXPECT_EQ(directory.Read("f").substr(0, 4), GetParam() ? "\0\0\0\x08"sv : "\0\0\0\x01"sv);

  for (const TOpenMode mode : {TOpenMode::kRead, TOpenMode::kReadWrite}) {
    EXPECT_EQ(file.Close(), 0);
    ASSERT_EQ(file.Open(directory.Name("f"), mode), Status::kOk);
    std::int32_t number = 0;
    CText text, bare;
    CTextPtrArray texts;
    CData block;
    EXPECT_TRUE(file.ReadInteger(kCode, 0, 99, number) == Status::kOk && number == 1);
    EXPECT_TRUE(file.ReadText(kCode, 4, 3, text) == Status::kOk && text.View() == "ab");
    EXPECT_TRUE(file.ReadText(kCode, 7, 2, bare) == Status::kOk && bare.View() == "cd");
    EXPECT_TRUE(file.ReadTextList(kCode, 9, 10, texts) == Status::kOk && texts == list);
    EXPECT_TRUE(file.ReadBlock(kCode, 19, 2, block) == Status::kOk);
    EXPECT_EQ(AsText(block.Bytes()), "E\0"sv);
    EXPECT_EQ(file.ReadBlock(kCode, 19, 3, block), Status::kFailure);
    EXPECT_EQ(file.ReadBlock(kCode, 1, 0xFFFFFFFF, block), Status::kFailure);
  }
}
INSTANTIATE_TEST_SUITE_P(TDataFile, Scrambling, testing::Bool());

TEST(TDataFile, ScramblesItsImageInPlaceAndTheCallersBufferForAWriteOnly) {
  TDataFile file(AsBytes("\x08"));
  file.SetScrambled(true);
  ByteView view;
  EXPECT_EQ(file.ViewBlock(kCode, 0, 1, view), Status::kOk);
  EXPECT_EQ(AsText(view), "\x01");
  file.SetScrambled(false);
  EXPECT_EQ(AsText(view), "\x08");
  EXPECT_EQ(file.GetMutableImage().data()[1], std::byte{0}) << "the spare byte";

  TDataFile target(std::tmpfile());
  target.SetScrambled(true);
  char buffer = '\x01';
  EXPECT_EQ(target.Write(1, &buffer), Status::kOk);
  EXPECT_EQ(buffer, '\x01');
  EXPECT_EQ(target.Write(1, nullptr), Status::kFailure);
}

TEST(TDataFile, ReadsInMemoryStayInsideTheImage) {
  TDataFile file(AsBytes("0123456789"));
  EXPECT_EQ(file.Seek(kCode, 8), Status::kOk);
  EXPECT_EQ(Take(file, 4), "!");
  EXPECT_EQ(Take(file, 0xFFFFFF), "!");
  EXPECT_EQ(Take(file, 2), "89") << "the position did not move";
  EXPECT_EQ(file.Seek(kCode, 10), Status::kFailure);
  EXPECT_EQ(file.Seek(kCode, 0xFFFFFFFF), Status::kFailure);
  CText text("before");
  EXPECT_EQ(file.ReadText(kCode, 10, 0, text), Status::kFailure) << "a section at the very end";
  EXPECT_TRUE(text.IsEmpty());
  EXPECT_EQ(Put(file, "x"), Status::kFailure);
  EXPECT_EQ(file.Flush(), Status::kFailure);
  EXPECT_EQ(file.Open("unused", TOpenMode::kWrite), Status::kFailure) << "one is in memory";
  file.Close();
  EXPECT_EQ(file.GetSize(), 0U);
  EXPECT_EQ(Take(file, 0), "!");
}

struct TListCase {
  std::string name;
  std::string_view section;
  Status status;
  std::vector<std::string_view> texts;
};
class TextList : public testing::TestWithParam<TListCase> {};

TEST_P(TextList, IsReadAsFarAsItGoes) {
  const std::string bytes = std::string(GetParam().section) + "behind";
  TDataFile file(AsBytes(bytes));
  CTextPtrArray list;
  EXPECT_EQ(file.ReadTextList(kCode, 0, Length(GetParam().section), list), GetParam().status);
  std::vector<std::string_view> texts;
  for (const CText& text : list) texts.push_back(text.View());
  EXPECT_EQ(texts, GetParam().texts);
}
const TListCase kLists[] = {
    {"NoPayload", ""sv, Status::kOk, {}},
    {"HalfACount", "\0\0\1"sv, Status::kMalformed, {}},
    {"CountOfNone", "\0\0\0\0"sv, Status::kOk, {}},
    {"Two", "\0\0\0\2x\0yz\0"sv, Status::kOk, {"x", "yz"}},
    {"MoreThanBytes", "\0\0\0\3x\0"sv, Status::kMalformed, {}},
    {"HugeCount", "\xFF\xFF\xFF\xFFx\0"sv, Status::kMalformed, {}},
    {"LastWithoutNul", "\0\0\0\2x\0yz"sv, Status::kOk, {"x", "yz"}},
    {"EndsEarly", "\0\0\0\3x\0y\0"sv, Status::kOk, {"x", "y"}},
    {"MoreThanTheCount", "\0\0\0\1x\0y\0"sv, Status::kOk, {"x"}},
};
INSTANTIATE_TEST_SUITE_P(TDataFile, TextList, testing::ValuesIn(kLists),
                         [](const auto& row) { return row.param.name; });

TEST(TDataFile, OnlyRegularFilesThatFitOpenForReading) {
  const TTestDirectory directory;
  for (const char* name : {"file", "huge"}) directory.Write(name, "x");
  std::filesystem::resize_file(directory.Path("huge"), std::uint64_t{1} << 32);
  TDataFile file;
  for (const char* name : {"huge", "missing", "", "/dev/zero", "nul"})
    EXPECT_EQ(file.Open(directory.Name(name), TOpenMode::kRead), Status::kFailure) << name;
  const CText name = directory.Name("file");
  const TDataFile other(AsBytes("has the memory that was kept"));
  for (const Status expected : {Status::kFailure, Status::kOk}) {
    const test::TAllocationFault no_memory(expected == Status::kOk ? 99 : 0);
    EXPECT_EQ(file.Open(name, TOpenMode::kRead), expected);
  }
  EXPECT_EQ(file.DeleteFile(name), 0);
  EXPECT_NE(file.DeleteFile(name), 0);
}

TEST(TDataFile, StreamModesAreThoseOfTheCLibrary) {
  // The result of writing "X" at 1 in "abc", and whether a missing file is created.
  using Mode = TOpenMode;
  const std::tuple<Mode, std::string_view, bool> cases[] = {
      {Mode::kWrite, "\0X"sv, true},    {Mode::kAppend, "abcX", true},
      {Mode::kReadWrite, "aXc", false}, {Mode::kReadAppend, "abcX", true},
      {Mode::kCreate, "\0X"sv, true},   {Mode{0}, "\0X"sv, true},
      {Mode{7}, "\0X"sv, true},
  };
  for (const auto& [mode, content, creates] : cases) {
    const TTestDirectory directory;
    directory.Write("old", "abc");
    TDataFile file;
    ASSERT_EQ(file.Open(directory.Name("old"), mode), Status::kOk);
    const bool reads = mode == Mode::kReadWrite || mode == Mode::kReadAppend;
    EXPECT_EQ(Take(file, 3) == "abc", reads);
    EXPECT_EQ(file.Seek(kCode, 1), Status::kOk);
    static_cast<void>(Put(file, "X"));  // The status still reports an earlier failed read.
    EXPECT_EQ(file.Open(directory.Name("new"), mode) == Status::kOk, creates);
    EXPECT_EQ(directory.Read("old"), content);
  }
}

TEST(TDataFile, BoundsTheWorkOfAFile) {
  const std::string content(std::size_t{3} << 20, 'x');
  for (const std::size_t size : {std::size_t{1} << 20, content.size()}) {
    TDataFile file(AsBytes(content).first(size));
    const std::size_t limit = size == content.size() ? 8 * size : 16U << 20;
    const auto count = static_cast<std::uint32_t>(size / 2);
    ByteView view;
    for (std::size_t done = 0; done < limit; done += count) {
      ASSERT_EQ(file.ViewBlock(kCode, 0, count, view), Status::kOk);
      ASSERT_EQ(file.ReadAt(kCode, count, count + 1, nullptr), Status::kFailure) << "no work";
    }
    std::int32_t number = 0;
    EXPECT_EQ(file.ReadInteger(kCode, 0, 4, number), Status::kMalformed);
    EXPECT_EQ(file.ChargeRecords(limit), Status::kOk);
    EXPECT_EQ(file.ChargeRecords(1), Status::kMalformed);
  }
}

/// Records the codes of the sections that are read.
class TRecordingFile : public TDataFile {
 public:
  using TDataFile::TDataFile;
  std::string log;

  Status ReadAt(FourCharCode code, std::uint32_t offset, std::uint32_t count,
                void* buffer) override {
    log.append(Characters(code).data(), 4).append(1, ' ');
    return TDataFile::ReadAt(code, offset, count, buffer);
  }
};

TEST(TDataFile, SubclassSeesTheCodeOfEverySection) {
  TRecordingFile file(AsBytes("\0\0\0\1x\0"sv));
  std::int32_t number = 0;
  CData scratch;
  CTextPtrArray list;
  ByteView block;
  std::string_view view;
  EXPECT_EQ(file.ReadInteger(Code("numb"), 0, 4, number), Status::kOk);
  EXPECT_EQ(file.ReadTextList(Code("list"), 0, 6, list), Status::kOk);
  EXPECT_EQ(file.ViewBlock(Code("blok"), 4, 2, scratch, block), Status::kOk);
  EXPECT_EQ(file.ViewText(Code("text"), 4, 2, view), Status::kOk);
  EXPECT_EQ(std::to_string(number) + list[0].GetCString() + std::string(view), "1xx");
  EXPECT_EQ(file.log, "numb list blok text ");
}

TEST(TDataFile, ShortReadOfAStreamLeavesTheResult) {
  const TTestDirectory directory;
  directory.Write("f", "abcdef");
  TDataFile file;
  ASSERT_EQ(file.Open(directory.Name("f"), TOpenMode::kReadWrite), Status::kOk);
  std::int32_t number = 7;
  char buffer[] = "12345678";
  CData block;
  block.Set("old", 3);
  EXPECT_EQ(file.ReadInteger(kCode, 3, 4, number), Status::kFailure);
  EXPECT_EQ(file.ReadAt(kCode, 3, 4, buffer), Status::kFailure);
  EXPECT_EQ(file.ReadAt(kCode, 9, 1, buffer), Status::kFailure);
  EXPECT_EQ(file.ReadBlock(kCode, 3, 4, block), Status::kFailure);
  EXPECT_EQ(file.Read(1, nullptr), Status::kFailure);
  EXPECT_EQ(number, 7);
  EXPECT_STREQ(buffer, "12345678");
  EXPECT_EQ(AsText(block.Bytes()), "old");
  EXPECT_EQ(file.ReadInteger(kCode, 2, 4, number), Status::kOk);
  EXPECT_EQ(number, 0x63646566);
}

TEST(TDataFile, BoundsTheWorkOfAStream) {
  const TTestDirectory directory;
  std::string buffer(std::size_t{1} << 20, 'x');
  directory.Write("file", buffer);
  TDataFile file;
  ASSERT_EQ(file.Open(directory.Name("file"), TOpenMode::kReadWrite), Status::kOk);
  for (int i = 0; i < 16; ++i)
    ASSERT_EQ(file.ReadAt(kCode, 0, Length(buffer), buffer.data()), Status::kOk);
  EXPECT_EQ(file.ReadAt(kCode, 0, 1, buffer.data()), Status::kMalformed);
  EXPECT_EQ(file.ChargeRecords((16U << 20) + 1), Status::kMalformed);
  EXPECT_EQ(file.Seek(kCode, 0), Status::kOk);
  EXPECT_EQ(Put(file, "y"), Status::kOk);
  EXPECT_EQ(file.ReadAt(kCode, 0, 1, buffer.data()), Status::kOk) << "the content is another";
}

TEST(TDataFile, NewFileHasItsNameOnlyWhenItIsPublished) {
  const TTestDirectory directory;
  TDataFile file;
  for (const bool is_published : {false, true}) {
    ASSERT_EQ(file.OpenNew(directory.Name("f")), Status::kOk);
    EXPECT_EQ(Put(file, "ab"), Status::kOk);
    EXPECT_EQ(file.Seek(kCode, 0), Status::kFailure);
    EXPECT_EQ(Put(file, "c"), Status::kOk);
    EXPECT_FALSE(std::filesystem::exists(directory.Path("f")));
    EXPECT_EQ(is_published ? file.Publish() : Status::kOk, Status::kOk);
    file.Close();
  }
  EXPECT_EQ(directory.Read("f"), "abc");
  EXPECT_EQ(directory.List().size(), 1U);
}

}  // namespace
}  // namespace zaf
