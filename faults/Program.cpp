#include "faults/Program.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace zaf::faults {
namespace {

using Clock = std::chrono::steady_clock;

int Checked(int result, const char* what) {
  if (result < 0) throw std::system_error(errno, std::generic_category(), what);
  return result;
}

/// A descriptor that is closed at the end.
class TDescriptor {
 public:
  explicit TDescriptor(int number) : number_(number) {}
  TDescriptor(const TDescriptor&) = delete;
  TDescriptor& operator=(const TDescriptor&) = delete;
  ~TDescriptor() { Close(); }
  [[nodiscard]] int Get() const { return number_; }
  void Close() {
    if (number_ >= 0) close(number_);
    number_ = -1;
  }

 private:
  int number_;
};

/// The page that the program under test shares with us.
class TSharedPage {
 public:
  TSharedPage() : file_(Checked(memfd_create("fault-page", MFD_CLOEXEC), "memfd_create")) {
    Checked(ftruncate(file_.Get(), sizeof(TPage)), "ftruncate");
    void* const mapped =
        mmap(nullptr, sizeof(TPage), PROT_READ | PROT_WRITE, MAP_SHARED, file_.Get(), 0);
    if (mapped == MAP_FAILED) Checked(-1, "mmap");
    page_ = static_cast<TPage*>(mapped);
  }
  TSharedPage(const TSharedPage&) = delete;
  TSharedPage& operator=(const TSharedPage&) = delete;
  ~TSharedPage() { munmap(page_, sizeof(TPage)); }
  [[nodiscard]] int Descriptor() const { return file_.Get(); }
  [[nodiscard]] TPage& Get() const { return *page_; }

 private:
  TDescriptor file_;
  TPage* page_;
};

/// What the program finds open when it starts.
class TFileActions {
 public:
  TFileActions(Terminal terminal, int pipe_end, int page) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    if (terminal == Terminal::kClosed)
      posix_spawn_file_actions_addclose(&actions_, STDERR_FILENO);
    else if (terminal == Terminal::kFull)
      posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/full", O_WRONLY, 0);
    else
      posix_spawn_file_actions_adddup2(&actions_, pipe_end, STDERR_FILENO);
    posix_spawn_file_actions_adddup2(&actions_, page, kPageDescriptor);
  }
  TFileActions(const TFileActions&) = delete;
  TFileActions& operator=(const TFileActions&) = delete;
  ~TFileActions() { posix_spawn_file_actions_destroy(&actions_); }
  [[nodiscard]] const posix_spawn_file_actions_t* Get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

/// Reads the pipe until the program has closed its end; false when that takes too long.
bool ReadMessages(int pipe_end, std::string& messages) {
  const Clock::time_point end = Clock::now() + kPatience;
  std::array<char, 4096> chunk;
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
    pollfd waiting{pipe_end, POLLIN, 0};
    if (left.count() <= 0 || poll(&waiting, 1, static_cast<int>(left.count())) == 0) return false;
    const ssize_t taken = read(pipe_end, chunk.data(), chunk.size());
    if (taken == 0) return true;
    if (taken > 0) messages.append(chunk.data(), static_cast<std::size_t>(taken));
  }
}

/// Waits for the end of a program that may not close its messages before; false: it took too long.
bool WaitFor(pid_t process, int& status) {
  for (const Clock::time_point end = Clock::now() + kPatience; Clock::now() < end;) {
    if (waitpid(process, &status, WNOHANG) == process) return true;
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  return false;
}

}  // namespace

TRun TProgram::Run(const TStart& start) const {
  TSharedPage page;
  page.Get().plan = start.plan;
  std::array<int, 2> ends;
  Checked(pipe2(ends.data(), O_CLOEXEC), "pipe2");
  TDescriptor reading(ends[0]);
  TDescriptor writing(ends[1]);
  const TFileActions actions(start.terminal, writing.Get(), page.Descriptor());

  std::vector<std::string> texts{program_.string()};
  texts.insert(texts.end(), start.arguments.begin(), start.arguments.end());
  std::vector<char*> arguments;
  arguments.reserve(texts.size() + 1);
  for (std::string& text : texts) arguments.push_back(text.data());
  arguments.push_back(nullptr);
  std::string preload = "LD_PRELOAD=" + injector_.string();
  std::string variable = std::string(kPageVariable) + "=1";
  std::array<char*, 3> environment{preload.data(), variable.data(), nullptr};
  if (start.is_alone) environment.front() = nullptr;

  if (start.terminal == Terminal::kBroken) reading.Close();
  const Clock::time_point begin = Clock::now();
  pid_t process = 0;
  if (posix_spawn(&process, program_.c_str(), actions.Get(), nullptr, arguments.data(),
                  environment.data()) != 0)
    throw std::runtime_error("cannot start " + program_.string());
  writing.Close();
  if (start.killed_after) {
    std::this_thread::sleep_for(*start.killed_after);
    kill(process, SIGKILL);
  }

  TRun run;
  run.is_stuck = reading.Get() >= 0 && !ReadMessages(reading.Get(), run.messages);
  run.is_stuck = run.is_stuck || !WaitFor(process, run.status);
  if (run.is_stuck) {
    kill(process, SIGKILL);
    waitpid(process, &run.status, 0);
  }
  run.time = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
  run.report = page.Get().report;
  return run;
}

}  // namespace zaf::faults
