// Makes the machine fail under Zaf2Xml in every way, and looks at what it leaves:
// fault_run PROGRAM INJECTOR SAMPLES WORK-DIRECTORY quick|long [only CASE PLAN...]
// With "only" it repeats one fault, in the words of a complaint, shows where it struck and what
// the program said, and leaves the directories.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "faults/Campaigns.h"

namespace {

using namespace zaf::faults;
namespace fs = std::filesystem;

void PrintRows(const std::vector<TRow>& rows) {
  std::printf("\n%-42s %7s %10s %9s %7s %11s\n", "fault", "points", "converted", "reported",
              "silent", "violations");
  TRow total{"all"};
  const auto print = [](const TRow& row) {
    std::printf("%-42s %7zu %10zu %9zu %7zu %11zu\n", row.kind.c_str(), row.point_count,
                row.outcome_counts[0], row.outcome_counts[1], row.outcome_counts[2],
                row.outcome_counts[3]);
  };
  for (const TRow& row : rows) {
    print(row);
    total.point_count += row.point_count;
    for (std::size_t i = 0; i < std::size(row.outcome_counts); ++i)
      total.outcome_counts[i] += row.outcome_counts[i];
  }
  print(total);
}

/// Tells the minutes and seconds that have gone by, and what comes now.
void Announce(const char* what) {
  static const auto begin = std::chrono::steady_clock::now();
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
  std::printf("%6.1f s  %s\n", time.count(), what);
  std::fflush(stdout);
}

int RunAll(TTrial& trial, const std::vector<TCase>& cases, Extensiveness extensiveness) {
  for (const TCase& what : cases) {
    trial.Begin(what);
    Announce("allocations");
    FailAllocations(trial, extensiveness);
  }
  for (const TCase& what : cases) {
    if (&what == &cases[0] && extensiveness == Extensiveness::kQuick) continue;
    trial.Begin(what);
    Announce("file operations");
    FailFileCalls(trial, extensiveness);
  }
  trial.Begin(cases[0]);
  Announce("kills");
  KillAtFileCalls(trial);
  KillAtRandom(trial, cases[0], extensiveness);
  trial.Begin(cases[1]);
  Announce("limits");
  LimitResources(trial, extensiveness);
  FillDisks(trial);
  DenyAccess(trial);
  CloseTerminal(trial);
  MisleadByNames(trial, cases[0]);
  Announce("stack");
  ConvertDeepTrees(trial, cases);
  Announce("done");
  PrintRows(trial.Rows());
  return trial.HasViolations() ? 1 : 0;
}

int RunOnly(TTrial& trial, const std::vector<TCase>& cases, const std::vector<std::string>& words) {
  const auto what = std::ranges::find(cases, words.at(0), &TCase::name);
  if (what == cases.end()) throw std::runtime_error("there is no case " + words.at(0));
  trial.Begin(*what);
  TStart start;
  start.plan = ParsePlan({words.begin() + 1, words.end()});
  start.plan.is_traced = true;
  trial.FirstSandbox().Restore(*what);
  const TRun run = trial.Run(trial.FirstSandbox(), start);
  std::printf("status %d\n%s\n", run.status, run.messages.c_str());
  return 0;
}

int Run(const std::vector<std::string>& words) {
  const TProgram program(fs::absolute(words.at(0)), fs::absolute(words.at(1)));
  const fs::path work = fs::absolute(words.at(3));
  const std::string& mode = words.at(4);
  const Extensiveness extensiveness = mode == "long" ? Extensiveness::kLong : Extensiveness::kQuick;
  const std::vector<TCase> cases = MakeCases(program, words.at(2), work, extensiveness);
  TTrial trial(program, work, std::clamp(std::thread::hardware_concurrency(), 1U, 10U));
  if (words.size() > 6 && words[5] == "only")
    return RunOnly(trial, cases, {words.begin() + 6, words.end()});
  return RunAll(trial, cases, extensiveness);
}

}  // namespace

int main(int argument_count, char** arguments) {
  try {
    if (argument_count < 6)
      throw std::runtime_error(
          "usage: fault_run PROGRAM INJECTOR SAMPLES WORK quick|long [only CASE PLAN...]");
    return Run({arguments + 1, arguments + argument_count});
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "fault_run: %s\n", failure.what());
    return 2;
  }
}
