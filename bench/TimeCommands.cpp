// Runs commands in turn, several rounds, and prints for each: the median wall time and the median
// processor time, in microseconds, and the maximum resident set, in KiB. The output directory is
// emptied before each run, outside the time. The rounds are interleaved, so that other load on the
// machine affects all commands alike; the first round only warms up and does not count.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <vector>

extern char** environ;

namespace {

constexpr char kUsage[] =
    "usage: time_commands ROUNDS OUTPUT-DIRECTORY -- COMMAND... [-- COMMAND...]...\n";

struct TCommand {
  std::vector<char*> words;  ///< Ends with a null pointer.
  std::vector<long> times;
  std::vector<long> processor_times;
  long memory = 0;
};

long Microseconds(const timeval& time) { return time.tv_sec * 1'000'000 + time.tv_usec; }

long Median(std::vector<long>& times) {
  std::ranges::sort(times);
  return times[times.size() / 2];
}

bool Run(TCommand& command) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  pid_t process = 0;
  int status = 0;
  rusage usage{};
  const auto begin = std::chrono::steady_clock::now();
  const bool is_done = posix_spawnp(&process, command.words[0], &actions, nullptr,
                                    command.words.data(), environ) == 0 &&
                       wait4(process, &status, 0, &usage) == process;
  const auto end = std::chrono::steady_clock::now();
  posix_spawn_file_actions_destroy(&actions);
  if (!is_done || !WIFEXITED(status) || WEXITSTATUS(status) != 0) return false;
  command.times.push_back(
      std::chrono::duration_cast<std::chrono::microseconds>(end - begin).count());
  command.processor_times.push_back(Microseconds(usage.ru_utime) + Microseconds(usage.ru_stime));
  command.memory = std::max(command.memory, usage.ru_maxrss);
  return true;
}

void Empty(const std::filesystem::path& directory) {
  std::filesystem::remove_all(directory);
  std::filesystem::create_directory(directory);
}

std::vector<TCommand> ParseCommands(int argument_count, char** arguments) {
  std::vector<TCommand> commands;
  for (int i = 3; i < argument_count; ++i) {
    if (std::string_view(arguments[i]) == "--") {
      commands.emplace_back();
    } else if (!commands.empty()) {
      commands.back().words.push_back(arguments[i]);
    }
  }
  for (TCommand& command : commands) command.words.push_back(nullptr);
  return commands;
}

}  // namespace

int main(int argument_count, char** arguments) {
  std::vector<TCommand> commands = ParseCommands(argument_count, arguments);
  const auto is_empty = [](const TCommand& command) { return command.words[0] == nullptr; };
  const int rounds = argument_count > 1 ? std::atoi(arguments[1]) : 0;
  if (rounds < 1 || commands.empty() || std::ranges::any_of(commands, is_empty)) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  for (int round = 0; round <= rounds; ++round)
    for (TCommand& command : commands) {
      Empty(arguments[2]);
      if (!Run(command)) {
        std::fprintf(stderr, "time_commands: %s failed\n", command.words[0]);
        return 1;
      }
      if (round == 0) {
        command.times.clear();
        command.processor_times.clear();
      }
    }
  for (TCommand& command : commands)
    std::printf("%ld %ld %ld\n", Median(command.times), Median(command.processor_times),
                command.memory);
  return 0;
}
