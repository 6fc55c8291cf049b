#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>
#include <windows.h>

#include "foundation/FileSystem.h"
#include "tests/foundation/TTestDirectory.h"

namespace zaf {
namespace {

using test::TTestDirectory;
using testing::ElementsAre;

TEST(FileSystem, NamesOfDevicesAndStreamsFailAndLoseNothing) {
  const TTestDirectory directory;
  directory.Write("a", "mine");
  for (const char* name :
       {"con", "NUL.txt", "com1.a.b", "LPT\xC2\xB2", "aux .x", "conout$", "a:b", "a::$DATA", ":b",
        "a.", "a ", "a|b", "a?", "\xFF", "\xED\xA0\x80", "\xEF\xBF\xBD"}) {
    const CText path(directory.Path() + "\\" + name);
    TInputFile input;
    TNewFile output;
    EXPECT_FALSE(input.Open(path) || MakeDirectory(path)) << name;
    EXPECT_FALSE(output.Open(path) && output.Publish()) << name;
    EXPECT_TRUE(output.HasWriteFailed()) << name;
  }
  EXPECT_THAT(directory.List(), ElementsAre("a"));
  EXPECT_EQ(directory.Read("a"), "mine");
  for (const char* name : {"con1", "com", "com10.x", ".nul", "b.x y"}) {
    TNewFile output;
    EXPECT_TRUE(output.Open(directory.Name(name)) && output.Publish()) << name;
  }
}

TEST(FileSystem, PathsHaveTheFormsOfTheSystem) {
  const TTestDirectory directory;
  directory.Write("in/A.zaf", "x");
  const std::string root = directory.Path();
  const std::string drive = root.substr(0, 2), rest = root.substr(2);
  ASSERT_TRUE(EnterDirectory(directory.Name("in")));
  for (const std::string& path :
       {std::string("a.ZAF"), std::string("../in/./a.zaf"), "\\\\?\\" + root + "\\in\\a.zaf",
        rest + "\\in/a.zaf", drive + "a.zaf", drive + rest + "/IN\\a.zaf"})
    EXPECT_EQ(ProbeFile(CText(path)), TPresence::kFile) << path;
}

TEST(FileSystem, HeldFileIsTriedAgainAndThenReported) {
  const TTestDirectory directory;
  directory.Write("file", "content");
  const CText name = directory.Name("file");
  const auto hold = [&] {
    return CreateFileA(name.GetCString(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  };
  const HANDLE scanner = hold();
  TInputFile input;
  EXPECT_FALSE(input.Open(name));
  EXPECT_EQ(ProbeFile(name), TPresence::kFile);
  std::jthread end_of_scan([&] {
    Sleep(50);
    CloseHandle(scanner);
  });
  EXPECT_TRUE(input.Open(name));
}

TEST(FileSystem, HeldFileIsReplacedWhenItIsLetGo) {
  const TTestDirectory directory;
  directory.Write("file", "old");
  const auto replace = [&] {
    TNewFile output;
    return output.Open(directory.Name("file")) && output.Publish(TakenName::kReplaced);
  };
  const HANDLE scanner = CreateFileA(directory.Path("file").c_str(), GENERIC_READ, FILE_SHARE_READ,
                                     nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_FALSE(replace());
  EXPECT_THAT(directory.List(), ElementsAre("file"));
  std::jthread end_of_scan([&] {
    Sleep(50);
    CloseHandle(scanner);
  });
  EXPECT_TRUE(replace());
}

TEST(FileSystem, FailedRenameLeavesNothing) {
  const TTestDirectory directory;
  TNewFile output;
  EXPECT_TRUE(output.Open(directory.Name("new")) && output.Write("x", 1));
  directory.Write("NEW", "mine");
  EXPECT_FALSE(output.Publish());
  EXPECT_FALSE(output.HasWriteFailed());
  EXPECT_THAT(directory.List(), ElementsAre("NEW"));
  EXPECT_EQ(directory.Read("new"), "mine");
}

}  // namespace
}  // namespace zaf
