// This file has its own open, read and write, which the checked inline ones stand in the way of.
#undef _FORTIFY_SOURCE

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

#include "foundation/FileSystem.h"
#include "foundation/TDataFile.h"
#include "tests/foundation/TTestDirectory.h"

namespace {

/// Errors of system calls that are to fail; 0: they do what they always do.
struct TFaults {
  int unnamed = 0;           ///< open with O_TMPFILE
  int descriptor_link = 0;   ///< linkat of a mere descriptor
  int link = 0;              ///< any linkat
  int rename = 0;            ///< renameat2
  int write = 0;             ///< write to a file
  std::vector<int> reads{};  ///< The next reads: the most that one takes, or its error, negative.
};
TFaults faults;

/// Makes a system call, or fails with `error` if there is one.
template <class... Arguments>
long Call(int error, long number, Arguments... arguments) {
  if (error == 0) return syscall(number, arguments...);
  errno = error;
  return -1;
}

}  // namespace

// These stand before those of the C library in this program.
extern "C" {
int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const unsigned mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, unsigned) : 0;
  va_end(arguments);
  const int error = (flags & O_TMPFILE) == O_TMPFILE ? faults.unnamed : 0;
  return static_cast<int>(Call(error, SYS_openat, AT_FDCWD, path, flags, mode));
}
int linkat(int from_at, const char* from, int to_at, const char* to, int flags) noexcept {
  const bool is_descriptor = (flags & AT_EMPTY_PATH) != 0 && faults.link == 0;
  const int error = is_descriptor ? faults.descriptor_link : faults.link;
  return static_cast<int>(Call(error, SYS_linkat, from_at, from, to_at, to, flags));
}
int renameat2(int from_at, const char* from, int to_at, const char* to, unsigned flags) noexcept {
  return static_cast<int>(Call(faults.rename, SYS_renameat2, from_at, from, to_at, to, flags));
}
ssize_t write(int file, const void* bytes, size_t count) {
  return Call(file > STDERR_FILENO ? faults.write : 0, SYS_write, file, bytes, count);
}
ssize_t read(int file, void* bytes, size_t count) {
  if (faults.reads.empty()) return Call(0, SYS_read, file, bytes, count);
  const int next = faults.reads.front();
  faults.reads.erase(faults.reads.begin());
  return Call(std::max(-next, 0), SYS_read, file, bytes, std::min(count, size_t(next)));
}
}

namespace zaf {
namespace {

using test::TTestDirectory;
using testing::ElementsAreArray;

TEST(FileSystemDeathTest, ClosedStandardStreamsAndFileSizeSignalsDoNoHarm) {
  const auto survive = [] {
    for (const int stream : {0, 1, 2}) close(stream);
    PrepareProcess();
    std::raise(SIGXFSZ);
    std::raise(SIGPIPE);
    std::_Exit(open("/dev/null", O_RDONLY) > STDERR_FILENO ? 0 : 1);
  };
  EXPECT_EXIT(survive(), testing::ExitedWithCode(0), "");
}

enum class Outcome { kPublished, kRefused, kWriteFailed };

struct TPublishCase {
  std::string name;
  TFaults faults;
  Outcome outcome;
};
class Publishing : public testing::TestWithParam<TPublishCase> {};

TEST_P(Publishing, GivesTheWholeFileOrLeavesNothingAndNeverReplaces) {
  const TTestDirectory directory;
  const std::string content(40000, 'x');
  std::filesystem::create_symlink("nowhere", directory.Path("taken"));
  const auto publish = [&](TNewFile& file, const CText& name) {
    const bool is_published =
        file.Open(name) && file.Write(content.data(), content.size()) && file.Publish();
    file.Discard();
    return is_published;
  };
  TNewFile file, other;
  const mode_t mask = umask(027);
  faults = GetParam().faults;
  const bool is_published = publish(file, directory.Name("new"));
  EXPECT_FALSE(publish(other, directory.Name("taken")));
  faults = {};
  umask(mask);
  EXPECT_EQ(is_published, GetParam().outcome == Outcome::kPublished);
  EXPECT_EQ(file.HasWriteFailed(), GetParam().outcome == Outcome::kWriteFailed);
  std::vector<std::string> names{"taken"};
  if (is_published) {
    names.insert(names.begin(), "new");
    EXPECT_EQ(int(std::filesystem::status(directory.Path("new")).permissions()), 0640);
  }
  EXPECT_THAT(directory.List(), ElementsAreArray(names));
  EXPECT_EQ(directory.Read("new"), is_published ? content : "");
  EXPECT_TRUE(std::filesystem::is_symlink(directory.Path("taken")));
}
constexpr int kNo = EOPNOTSUPP;
const TPublishCase kPublishCases[] = {
    {"Unnamed", {}, Outcome::kPublished},
    {"ThroughProc", {.descriptor_link = ENOENT}, Outcome::kPublished},
    {"CannotBeLinked", {.link = EPERM}, Outcome::kPublished},
    {"WithoutProc", {.link = ENOENT}, Outcome::kPublished},
    {"Named", {.unnamed = kNo}, Outcome::kPublished},
    {"NamedLinked", {.unnamed = kNo, .rename = EINVAL}, Outcome::kPublished},
    {"NamedNoWay", {.unnamed = kNo, .link = EPERM, .rename = EINVAL}, Outcome::kWriteFailed},
    {"DirectoryIsFull", {.link = ENOSPC, .rename = ENOSPC}, Outcome::kWriteFailed},
    {"DirectoryRefuses", {.unnamed = EACCES}, Outcome::kRefused},
    {"NameRefused", {.link = EACCES}, Outcome::kRefused},
    {"DiskIsFull", {.write = ENOSPC}, Outcome::kWriteFailed},
};
INSTANTIATE_TEST_SUITE_P(FileSystem, Publishing, testing::ValuesIn(kPublishCases),
                         [](const auto& row) { return row.param.name; });

TEST(FileSystem, ImageEndsInWhatWasRead) {
  const TTestDirectory directory;
  directory.Write("file", "content");
  const std::pair<std::vector<int>, std::string_view> cases[] = {
      {{1, 2}, "content"}, {{1, 0}, "c"}, {{0}, ""}, {{-EINTR}, "content"}, {{1, -EIO}, ""},
  };
  for (const auto& [reads, expected] : cases) {
    TDataFile file;
    faults.reads = reads;
    const Status status = file.Open(directory.Name("file"), TOpenMode::kRead);
    EXPECT_EQ(status == Status::kOk, !expected.empty());
    EXPECT_EQ(AsText(file.GetImage()), expected);
  }
}

}  // namespace
}  // namespace zaf
