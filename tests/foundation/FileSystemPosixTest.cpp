#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/FileSystem.h"
#include "tests/foundation/TTestDirectory.h"

// scripts/faults tests failures of system calls, using the complete program.

namespace zaf {
namespace {

TEST(FileSystemDeathTest, ClosedStandardStreamsAndFileSizeSignalsDoNoHarm) {
  const auto survive = [] {
    for (const int stream : {0, 1, 2}) close(stream);
    PrepareProcess();
    std::raise(SIGXFSZ);
    std::raise(SIGPIPE);
    std::_Exit(dup(0) > STDERR_FILENO ? 0 : 1);
  };
  EXPECT_EXIT(survive(), testing::ExitedWithCode(0), "");
}

TEST(FileSystem, NewFileHasTheUsualPermissionsAndReplacesNoLink) {
  const test::TTestDirectory directory;
  std::filesystem::create_symlink("nowhere", directory.Path("taken"));
  const auto publish = [&](const char* name) {
    TNewFile file;
    return file.Open(directory.Name(name)) && file.Write("x", 1) && file.Publish();
  };
  const mode_t mask = umask(027);
  EXPECT_TRUE(publish("new"));
  umask(mask);
  EXPECT_FALSE(publish("taken"));
  EXPECT_EQ(int(std::filesystem::status(directory.Path("new")).permissions()), 0640);
  EXPECT_TRUE(std::filesystem::is_symlink(directory.Path("taken")));
  EXPECT_THAT(directory.List(), testing::ElementsAre("new", "taken"));
}

}  // namespace
}  // namespace zaf
