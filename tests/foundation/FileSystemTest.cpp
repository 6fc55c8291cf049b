#include <chrono>
#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>

#include "foundation/FileSystem.h"
#include "foundation/Paths.h"
#include "foundation/StandardPaths.h"
#include "foundation/TDataFile.h"
#include "tests/foundation/TTestDirectory.h"

namespace zaf {
namespace {

using test::TTestDirectory;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(FileSystem, PatternsMatchIgnoringCase) {
  for (const char* name : {"A.ZaF", ".zaf", "a.zaf.zafzaf.zaf"})
    EXPECT_TRUE(MatchesPattern(name, "*.zAf")) << name;
  for (const char* name : {"a.zafx", "zaf", ""})
    EXPECT_FALSE(MatchesPattern(name, "*.zAf")) << name;
  EXPECT_TRUE(MatchesPattern("name", "*.*"));
  EXPECT_TRUE(MatchesPattern("abcbcd.x", "a*bc*d.?**"));
  EXPECT_FALSE(MatchesPattern("abc", "a*bc?"));
}

TEST(FileSystem, ListsNamesInByteOrder) {
  const TTestDirectory directory;
  std::vector<std::string> expected = {"!", "A", "a.zaf", "b", "\x7F", "\xC3\xA4\xC3\xBC"};
  for (const std::string& name : expected) directory.Write(name, "");
  // More long names than fit one buffer.
  for (int i = 100; i < 200; ++i) {
    expected.push_back(std::string(150, 'n') + std::to_string(i));
    directory.Write(expected.back(), "");
  }
  for (const char* const name : {"Z", "+"}) {
    std::filesystem::create_directory(directory.Path(name));
    expected.emplace_back(name);
  }
  std::sort(expected.begin(), expected.end());
  expected.insert(expected.begin(), {".", ".."});

  ASSERT_TRUE(EnterDirectory(directory.Name(".")));
  TDirectoryListing listing;
  ASSERT_TRUE(ListWorkingDirectory(Identities::kWanted, listing));
  std::vector<std::string> names;
  for (std::size_t i = 0; i < listing.names.GetCount(); ++i) names.emplace_back(listing.names[i]);
  EXPECT_EQ(names, expected);
  ASSERT_EQ(listing.subdirectories.size(), 2U);
  EXPECT_EQ(listing.subdirectories[0].name, "+");
  EXPECT_EQ(listing.subdirectories[1].name, "Z");
  for (const TSubdirectory& entry : listing.subdirectories) {
    ASSERT_TRUE(EnterDirectory(directory.Name("Z/../" + entry.name)));
    EXPECT_EQ(GetWorkingDirectoryIdentity(), entry.identity);
  }
}

std::string Content(const CText& path) {
  TDataFile file;
  return file.Open(path, TOpenMode::kRead) == Status::kOk ? std::string(AsText(file.GetImage()))
                                                          : "not opened";
}

bool WriteNew(const CText& path, std::string_view content, TakenName taken = TakenName::kKept) {
  TNewFile file;
  return file.Open(path) && file.Write(content.data(), content.size()) && file.Publish(taken);
}

TEST(FileSystem, NewFileHasANameOfAnyLengthAndReplacesOnlyOnRequest) {
  const TTestDirectory directory;
  ASSERT_TRUE(EnterDirectory(directory.Name(".")));
  // The names that a temporary one could have if it were as short.
  for (const char& digit : std::string_view("0123456789abcdef")) directory.Write({&digit, 1}, "");
  for (std::size_t length = 1; length <= 40; ++length) {
    const std::string name(length, 'n');
    EXPECT_TRUE(WriteNew(CText(name), "old")) << length;
    EXPECT_FALSE(WriteNew(CText(name), "new")) << length;
    EXPECT_EQ(directory.Read(name), "old");
    EXPECT_TRUE(WriteNew(CText(name), "newer", TakenName::kReplaced)) << length;
    EXPECT_EQ(directory.Read(name), "newer");
  }
  EXPECT_EQ(directory.List().size(), 56U);
}

TEST(FileSystem, PathsMayBeLongerThanTheStandardLibraryAllows) {
  const TTestDirectory directory;
  std::string path = directory.Path();
  for (int i = 0; i < 3; ++i) path += kPathSeparator + std::string(200, 'd');
  const std::string file = path + kPathSeparator + "file";
  EXPECT_EQ(LookAt(file).kind, PathKind::kNothing);
  EXPECT_TRUE(MakeDirectories(path + kPathSeparator) &&
              MakeDirectories(path + kPathSeparator + "d"));
  std::ofstream(StreamPath(file)) << "content";
  EXPECT_FALSE(MakeDirectories(file));
  EXPECT_EQ(LookAt(file).size, 7U);
  EXPECT_TRUE(AreSame(file, path + kPathSeparator + "d/../file") && !AreSame(file, path));
  EXPECT_TRUE(WriteNew(CText(file + "2"), ""));
  const auto now = std::filesystem::file_time_type::clock::now();
  std::filesystem::last_write_time(StreamPath(file), now - std::chrono::hours(1));
  EXPECT_TRUE(IsNewer(file + "2", file) && !IsNewer(file, file + "2"));
  EXPECT_TRUE(CopyTime(file, file + "2") && !IsNewer(file + "2", file));
  std::map<std::string, bool, std::less<>> entries;
  EXPECT_TRUE(VisitEntries(path, [&](std::string_view name, PathKind kind) {
    entries.emplace(name, kind == PathKind::kDirectory);
  }));
  EXPECT_THAT(entries, ElementsAre(Pair("d", true), Pair("file", false), Pair("file2", false)));
  // The library's functions cannot remove paths of such a length on every system.
  EXPECT_TRUE(RemoveFile(CText(file)) && RemoveFile(CText(file + "2")));
  EXPECT_TRUE(DeleteDirectory(CText(path + kPathSeparator + "d")));
  while (path != directory.Path()) {
    EXPECT_TRUE(DeleteDirectory(CText(path)));
    path.resize(path.rfind(kPathSeparator));
  }
}

TEST(FileSystem, NamesThatDifferOnlyOutsideAsciiAreDifferentFiles) {
  const TTestDirectory directory;
  ASSERT_TRUE(EnterDirectory(directory.Name(".")));
  EXPECT_TRUE(WriteNew(CText("\xC5\x82.zaf"), "with a stroke"));
  EXPECT_EQ(ProbeFile(CText("l.zaf")), TPresence::kAbsent);
  EXPECT_TRUE(WriteNew(CText("l.zaf"), "without"));
  EXPECT_EQ(Content(directory.Name("\xC5\x82.zaf")), "with a stroke");
  EXPECT_EQ(Content(directory.Name("l.zaf")), "without");
}

TEST(FileSystemDeathTest, NewFileIsGoneWithItsProcessUnlessItIsPublished) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const TTestDirectory directory;
  ASSERT_TRUE(EnterDirectory(directory.Name(".")));
  const auto end_while_writing = [] {
    TNewFile file;
    const bool is_written = file.Open(CText("new")) && file.Write("content", 7);
    std::_Exit(is_written && !WriteNew(CText("none/new"), "") ? 0 : 1);
  };
  EXPECT_EXIT(end_while_writing(), testing::ExitedWithCode(0), "");
  EXPECT_THAT(directory.List(), IsEmpty());
  EXPECT_TRUE(WriteNew(CText("new"), "content"));
  EXPECT_THAT(directory.List(), ElementsAre("new"));
}

}  // namespace
}  // namespace zaf
