#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver/CommandLine.h"
#include "driver/ConversionRun.h"
#include "foundation/Heap.h"
#include "tests/foundation/TTestDirectory.h"
#include "tests/support/AllocationFault.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

using test::LegacyFile;
using test::TTestDirectory;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

#define CANNOT_OPEN "WARNING: Unable to open ZAF. Incorrect filename or file may not exist.\n"
#define CANNOT_READ "WARNING: Unable to read ZAF!\n"
#define EXISTS "WARNING: File already exists and will not be overwritten!\n"
#define NOT_CONVERTED "WARNING: Could not convert file successfully!\n"
#define NOT_COVERTED "WARNING: Could not covert file successfully!\n"

/// Runs in a directory that contains "in" and "out".
class ConversionRun : public testing::Test {
 protected:
  ConversionRun() {
    for (const char* name : {"in", "out"}) directory_.Make(name);
  }

  /// Adds valid files, with paths relative to "in".
  void AddFiles(std::initializer_list<const char*> names) const {
    for (const char* name : names)
      directory_.Write(std::string("in/") + name, LegacyFile().Bytes());
  }

  /// Parses the command line "-i in ... out", with both as absolute paths.
  std::optional<ConversionOptions> Parse(std::vector<const char*> options) {
    const std::string input = directory_.Path("in"), output = directory_.Path("out");
    options.insert(options.begin(), {"Zaf2Xml", "-i", input.c_str()});
    options.push_back(output.c_str());
    messages_.clear();
    return ParseCommandLine(options, report_);
  }

  /// Converts and returns the messages.
  std::string Run(std::vector<const char*> options = {}) {
    if (const auto parsed = Parse(std::move(options))) RunConversion(*parsed, report_);
    return messages_;
  }

  TTestDirectory directory_;
  std::string messages_;
  const MessageSink report_ = [this](std::string_view text) { messages_ += text; };
};

TEST_F(ConversionRun, MirrorsTheTreeAndKeepsOnlyDirectoriesWithAttempts) {
  AddFiles({"A.ZAF", "b.zaf.zaf", "c.zafx", "d.zaf.x", "deep/er/e.zaf", "plain/f.txt"});
  directory_.Link("A.ZAF", "in/link.zaf");
  directory_.Link(".", "in/loop");
  for (const char* name : {"in/empty", "in/kept", "out/kept"}) directory_.Make(name);
  EXPECT_EQ(Run({"-r"}), "");
  EXPECT_THAT(directory_.List("out"), ElementsAre("A.xzf", "b.zaf.xzf", "deep/", "deep/er/",
                                                  "deep/er/e.xzf", "kept/", "link.xzf"));
  EXPECT_THAT(directory_.Read("out/deep/er/e.xzf"), StartsWith("<?xml "));
  directory_.Write("out/A.xzf", "mine");
  EXPECT_EQ(Run({"-r"}),
            EXISTS NOT_CONVERTED EXISTS NOT_CONVERTED EXISTS NOT_CONVERTED EXISTS NOT_CONVERTED);
  EXPECT_EQ(directory_.Read("out/A.xzf"), "mine");
}

TEST_F(ConversionRun, StaysAtTheTopUnlessToldToRecurse) {
  AddFiles({"a.zaf", "b.zcf", "sub/c.zaf"});
  EXPECT_EQ(Run({"-v"}), "");
  EXPECT_THAT(directory_.List("out"), ElementsAre("a.xzf"));
  EXPECT_EQ(Run({"-E", "ZCF", "-s", "xcf"}), "");
  EXPECT_THAT(directory_.Read("out/a.xzf"), HasSubstr("<ZAF"));
  EXPECT_THAT(directory_.Read("out/b.xcf"), HasSubstr("<ZCF"));
}

TEST_F(ConversionRun, ReportsFilesInTheOrderOfTheirNamesAndGoesOn) {
  directory_.MakeFifo("in/Z.zaf");
  directory_.Write("in/b.zaf", "no file begins like this");
  AddFiles({"a.zaf", "c.zaf"});
  directory_.Make("in/d.zaf");
  directory_.Write("in/\xC3\x89.zaf", "no file begins like this");
  directory_.Link("missing", "in/\xC3\x8A.zaf");
  EXPECT_EQ(Run(), CANNOT_OPEN NOT_CONVERTED CANNOT_READ NOT_CONVERTED CANNOT_OPEN NOT_CONVERTED
                       CANNOT_READ NOT_CONVERTED CANNOT_OPEN NOT_CONVERTED);
  EXPECT_THAT(directory_.List("out"), ElementsAre("a.xzf", "c.xzf"));
}

TEST_F(ConversionRun, FailureToCreateIsSilentUnlessVerified) {
  AddFiles({"a.zaf", "b.zaf", "c.zaf", "d.zaf"});
  directory_.Make("out/a.xzf");
  directory_.Write("out/b.xzf", "");
  directory_.MakeFifo("out/c.xzf");
  directory_.Link("missing", "out/d.xzf");
  EXPECT_EQ(Run(), "");
  EXPECT_THAT(directory_.List("out"), ElementsAre("a.xzf/", "b.xzf", "c.xzf", "d.xzf"));
  EXPECT_EQ(directory_.Read("out/b.xzf"), "");
  std::string expected;
  for (int i = 0; i < 4; ++i) expected += "WARNING: Unable to open ZAF!\n" NOT_CONVERTED;
  EXPECT_EQ(Run({"-v"}), expected);
}

TEST_F(ConversionRun, StaysOutOfItsOwnOutput) {
  AddFiles({"a.zaf", "out/c.zaf", "z/b.zaf"});
  const std::string input = directory_.Path("in"), output = directory_.Path("in/../in/out");
  const std::vector arguments{"Zaf2Xml", "-r", "-i", input.c_str(), output.c_str()};
  EXPECT_TRUE(ConvertDirectory(*ParseCommandLine(arguments, report_), report_));
  EXPECT_EQ(messages_, "");
  EXPECT_THAT(directory_.List("in/out"), ElementsAre("a.xzf", "c.zaf", "z/", "z/b.xzf"));
}

TEST_F(ConversionRun, LevelEndsUncountedWhereASubdirectoryCannotBeCreated) {
  // The output of the file has the path of the directory's output.
  AddFiles({"a/a.zaf", "s/x.zaf", "s/x.xzf/y.zaf", "s/z/z.zaf"});
  EXPECT_EQ(Run({"-r"}), "ERROR: Problem creating directory!\nERROR: Directory clean up error! \n");
  EXPECT_THAT(directory_.List("out"), ElementsAre("a/", "a/a.xzf", "s/", "s/x.xzf"));
}

TEST_F(ConversionRun, WalksAsDeepAsPathNamesReach) {
  // Deeper than any path on systems with 4,096 bytes for it; elsewhere longer than most programs
  // support.
  constexpr bool kIsPosix = kPathSeparator == '/';
  constexpr int kDepth = kIsPosix ? 520 : 50, kDepthOfFile = kIsPosix ? 250 : 40;
  const CText subtree("subtree"), file("a.zaf");
  std::string mirrored = directory_.Path("out");
  ASSERT_TRUE(EnterDirectory(directory_.Name("in")));
  for (int i = 0; i < kDepth; ++i) {
    if (i == kDepthOfFile) std::fclose(OpenStream(file, "w"));
    if (i < kDepthOfFile) mirrored.append(1, kPathSeparator).append("subtree");
    ASSERT_TRUE(MakeDirectory(subtree) && EnterDirectory(subtree));
  }
  EXPECT_EQ(Run({"-r"}), std::string(CANNOT_OPEN NOT_CONVERTED) +
                             (kIsPosix ? "ERROR: Problem creating directory!\n" : ""));
  ASSERT_TRUE(EnterDirectory(CText(mirrored)));
  EXPECT_FALSE(EnterDirectory(subtree));
#ifdef _WIN32
  // The functions of the standard library cannot remove such long paths there.
  for (const char* top : {"in", "out"}) {
    ASSERT_TRUE(EnterDirectory(directory_.Name(top)));
    int depth = 0;
    for (; EnterDirectory(subtree); ++depth) static_cast<void>(RemoveFile(file));
    static_cast<void>(RemoveFile(file));
    for (; depth > 0; --depth) ASSERT_TRUE(EnterDirectory(CText("..")) && DeleteDirectory(subtree));
  }
#endif
}

// Incomplete content must not be written, and an incomplete path names another directory.
TEST_F(ConversionRun, ReportsEveryFailureOfMemoryAndMistakesNothing) {
  std::filesystem::copy_file(ZAF2XML_SAMPLES "/guestbook.zaf", directory_.Path("in/a.zaf"));
  directory_.Write("in/sub/b.zaf",
                   LegacyFile().Action("igrp", "A").Payload("frmt", std::string(640, 'f')).Bytes());
  ASSERT_EQ(Run({"-r"}), "");
  const auto all = directory_.List("out");
  const std::string content = directory_.Read("out/a.xzf");
  const std::string input = directory_.Path("in"), output = directory_.Path("out");
  const char* const arguments[] = {"Zaf2Xml", "-i", input.c_str(), "-r", output.c_str()};
  messages_.reserve(10'000);
  bool has_struck = true;
  for (std::uint64_t failing = 0; has_struck; ++failing) {
    std::filesystem::current_path(directory_.Path());
    std::filesystem::remove_all(directory_.Path("out"));
    directory_.Make("out");
    messages_.clear();
    {
      const test::TAllocationFault fault(failing);
      if (const auto parsed = ParseCommandLine(arguments, report_)) RunConversion(*parsed, report_);
      has_struck = fault.GetRequestCount() > failing;
    }
    const auto outputs = directory_.List("out");
    EXPECT_EQ(messages_.empty(), outputs == all) << failing << messages_;
    const bool is_there = testing::Value(outputs, testing::Contains("a.xzf"));
    EXPECT_TRUE(!is_there || directory_.Read("out/a.xzf") == content) << failing;
  }
}

TEST_F(ConversionRun, InputDirectoryThatVanished) {
  const auto directory = Parse({"-r"}), single = Parse({"-f", "a.zaf"});
  ASSERT_TRUE(directory && single);
  std::filesystem::remove(directory_.Path("in"));
  EXPECT_FALSE(ConvertDirectory(*directory, report_));
  EXPECT_EQ(messages_, "WARNING: Unable to locate the input directory\n");
  messages_.clear();
  ConvertSingleFile(*single, report_);
  EXPECT_EQ(messages_, "ERROR: Unable to locate the input directory\n");
}

TEST_F(ConversionRun, ConvertsOneFile) {
  AddFiles({"a.zaf", "a.zaf.zaF.bak", "plain"});
  EXPECT_EQ(Run({"-f", "a.zaf.zaF.bak", "-v"}), "");
  EXPECT_EQ(Run({"-f", "plain"}), "");
  EXPECT_EQ(Run({"-f", "a.zaf", "-o", "b"}), "");
  EXPECT_EQ(Run({"-f", "a.zaf", "-o", "b"}), EXISTS NOT_COVERTED);
  EXPECT_EQ(Run({"-f", "missing.zaf"}), CANNOT_OPEN NOT_COVERTED);
  EXPECT_THAT(directory_.List("out"), ElementsAre("a.zaf.bak.xzf", "b", "plain.xzf"));
}

TEST_F(ConversionRun, ReadsFilesBack) {
  directory_.Write("in/a.zaf", LegacyFile("rdoc").Action("null", "A").Bytes());
  const std::string join = test::ListOf(1, std::string(648, '\0'));
  directory_.Write("in/b.zaf", LegacyFile().Action("srch", "A").Payload("join", join).Bytes());
  EXPECT_EQ(Run({"-v"}), CANNOT_READ NOT_CONVERTED);
}

}  // namespace
}  // namespace zaf
