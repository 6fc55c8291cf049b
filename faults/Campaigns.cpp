#include "faults/Campaigns.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <random>
#include <stdexcept>

#include "tests/support/LegacyFile.h"

namespace zaf::faults {
namespace {

namespace fs = std::filesystem;

constexpr Machine kMachines[] = {Machine::kUsual, Machine::kNoUnnamedFiles, Machine::kNoLinks};

struct TFault {
  Call call;
  Action action;
  int error;
};

/// What can go wrong with each call.
constexpr TFault kFaults[] = {
    {Call::kOpen,             Action::kFail,    EMFILE},
    {Call::kOpen,             Action::kFail,    EACCES},
    {Call::kOpen,             Action::kFail,    ENOSPC},
    {Call::kOpen,             Action::kFail,    EIO   },
    {Call::kOpen,             Action::kFail,    EINTR },
    {Call::kRead,             Action::kFail,    EIO   },
    {Call::kRead,             Action::kFail,    EINTR },
    {Call::kRead,             Action::kShorten, 0     },
    {Call::kWrite,            Action::kFail,    ENOSPC},
    {Call::kWrite,            Action::kFail,    EIO   },
    {Call::kWrite,            Action::kFail,    EINTR },
    {Call::kWrite,            Action::kShorten, 0     },
    {Call::kClose,            Action::kFail,    EIO   },
    {Call::kClose,            Action::kFail,    EINTR },
    {Call::kSeek,             Action::kFail,    EIO   },
    {Call::kStat,             Action::kFail,    EIO   },
    {Call::kOpenDirectory,    Action::kFail,    EACCES},
    {Call::kOpenDirectory,    Action::kFail,    EMFILE},
    {Call::kReadDirectory,    Action::kFail,    EIO   },
    {Call::kEnterDirectory,   Action::kFail,    EACCES},
    {Call::kEnterDirectory,   Action::kFail,    EIO   },
    {Call::kMakeDirectory,    Action::kFail,    ENOSPC},
    {Call::kMakeDirectory,    Action::kFail,    EACCES},
    {Call::kRemoveDirectory,  Action::kFail,    EBUSY },
    {Call::kWorkingDirectory, Action::kFail,    ENOENT},
    {Call::kLink,             Action::kFail,    ENOENT},
    {Call::kLink,             Action::kFail,    EPERM },
    {Call::kLink,             Action::kFail,    EEXIST},
    {Call::kLink,             Action::kFail,    ENOSPC},
    {Call::kLink,             Action::kFail,    EIO   },
    {Call::kRename,           Action::kFail,    EINVAL},
    {Call::kRename,           Action::kFail,    EEXIST},
    {Call::kRename,           Action::kFail,    ENOSPC},
    {Call::kRename,           Action::kFail,    EIO   },
    {Call::kUnlink,           Action::kFail,    EIO   },
    {Call::kRandom,           Action::kFail,    ENOSYS},
    {Call::kRandom,           Action::kShorten, 0     },
    {Call::kSignal,           Action::kFail,    EINVAL},
    {Call::kStreamOpen,       Action::kFail,    EACCES},
    {Call::kStreamOpen,       Action::kFail,    EMFILE},
    {Call::kStreamOpen,       Action::kFail,    EIO   },
    {Call::kStreamWrite,      Action::kFail,    EIO   },
};

/// What the program makes of one file: the content of a case, for others.
TTree Convert(const TProgram& program, const fs::path& work, const TTree& input,
              const std::string& extension) {
  const TSandbox sandbox(work / "prepared");
  WriteTree(input, sandbox.Input());
  WriteTree({}, sandbox.Output());
  TStart start;
  start.is_alone = true;
  start.arguments = {"-e", extension, "-i", sandbox.Input(), sandbox.Output()};
  static_cast<void>(program.Run(start));
  return sandbox.Look().output;
}

/// An application that is more than the program writes at a time, and for which it has the heap use
/// large pages.
std::string LargeApplication() {
  constexpr std::size_t kLength = std::size_t{600} << 10;
  return test::LegacyFile()
      .Action("null", "large")
      .Text("rslt", std::string(kLength, 'x'))
      .Text("none", std::string(kLength, '<'))
      .Bytes();
}

/// A document with a text of several pieces, which are joined when it is read.
std::string DocumentOfPieces() {
  const std::string piece = "<![CDATA[" + std::string(std::size_t{300} << 10, 'x') + "]]>";
  return R"(<?xml version="1.0"?><ZAF><Actions><ResultAction ID="a"><ResultsOutput Ref="b"/>)"
         R"(</ResultAction></Actions><Outputs><Output ID="b">)" +
         piece + piece + "</Output></Outputs></ZAF>";
}

std::vector<TPlan> PlansForEach(std::uint64_t count, std::uint64_t step, TPlan plan) {
  std::vector<TPlan> plans;
  for (plan.number = 1; plan.number <= count; plan.number += step) plans.push_back(plan);
  return plans;
}

std::string KindOf(const TFault& fault) {
  std::string kind = kCallNames[static_cast<std::size_t>(fault.call)];
  if (fault.action == Action::kShorten) return kind + " falls short";
  return kind + ": " + strerrorname_np(fault.error);
}

}  // namespace

std::vector<TCase> MakeCases(const TProgram& program, const fs::path& samples, const fs::path& work,
                             Extensiveness extensiveness) {
  const std::string guestbook = ReadFile(samples / "guestbook.zaf");
  const std::string till = ReadFile(samples / "till.zaf");
  TTree plain;
  AddFile(plain, "guestbook.zaf", guestbook);
  AddFile(plain, "till.zaf", till);
  const TTree converted = Convert(program, work, plain, "zaf");

  TCase tree{"tree", {"-r"}, plain, {}};
  AddFile(tree.input, "broken.zaf", guestbook.substr(0, guestbook.size() / 2));
  AddFile(tree.input, "taken.zaf", guestbook);
  AddFile(tree.output_before, "taken.xzf", "This file was there before.\n");
  AddFile(tree.input, "page.zaf", converted.at("guestbook.xzf").substr(1));
  AddFile(tree.input, "sealed.zaf", converted.at("till.xzf").substr(1));
  AddFile(tree.input, "notes.txt", "No application.\n");
  AddFile(tree.input, "deep/deeper/guestbook.zaf", guestbook);
  AddFile(tree.input, "last/till.zaf", till);
  AddFile(tree.input, "other/notes.txt", "No application here either.\n");
  if (extensiveness == Extensiveness::kLong) {
    for (const char* const name : {"checkout.zaf", "order-entry.zaf", "staff-directory.zaf"}) {
      const std::string legacy = ReadFile(samples / name);
      AddFile(tree.input, name, legacy);
      TTree alone;
      AddFile(alone, "it.zaf", legacy);
      AddFile(tree.input, std::string("deep/xml-") + name,
              Convert(program, work, alone, "zaf").at("it.xzf").substr(1));
    }
  }
  TCase verified = tree;
  verified.name = "tree -v";
  verified.options = {"-r", "-v"};

  TCase classes{
      "classes", {"-v",   "-e", "zcf", "-s", "xcf"},
       {},
       {}
  };
  AddFile(classes.input, "reports.zcf", ReadFile(samples / "reports.zcf"));
  TCase single{
      "single", {"-v",             "-f", "till.zaf", "-o", "'my till.xml'"},
       plain, {}
  };
  TCase large{"large", {"-v"}, {}, {}};
  AddFile(large.input, "large.zaf", LargeApplication());
  AddFile(large.input, "pieces.zaf", DocumentOfPieces());
  return {tree, verified, classes, single, large};
}

void FailAllocations(TTrial& trial, Extensiveness extensiveness) {
  const std::uint64_t count = trial.CountCalls(Call::kAllocation, Machine::kUsual);
  std::printf("  %s: %llu allocations\n", trial.Current().name.c_str(),
              static_cast<unsigned long long>(count));
  TPlan plan;
  plan.action = Action::kFail;
  plan.error = ENOMEM;
  trial.TryPlans("one allocation fails", PlansForEach(count, 1, plan));
  plan.extent = Extent::kOnwards;
  const std::uint64_t step = extensiveness == Extensiveness::kLong ? 1 : 7;
  trial.TryPlans("an allocation and all later ones fail", PlansForEach(count, step, plan));
}

void FailFileCalls(TTrial& trial, Extensiveness extensiveness) {
  for (const Machine machine : kMachines) {
    for (const TFault& fault : kFaults) {
      TPlan plan;
      plan.call = fault.call;
      plan.action = fault.action;
      plan.error = fault.error;
      plan.machine = machine;
      const std::uint64_t count = trial.CountCalls(fault.call, machine);
      trial.TryPlans(KindOf(fault), PlansForEach(count, 1, plan));
      // Nothing is interrupted for ever.
      if (fault.error == EINTR || count == 0) continue;
      plan.extent = Extent::kOnwards;
      const std::uint64_t step = extensiveness == Extensiveness::kLong ? 1 : count;
      trial.TryPlans(KindOf(fault) + ", and all later ones", PlansForEach(count, step, plan));
    }
  }
}

void KillAtFileCalls(TTrial& trial) {
  for (const Machine machine : kMachines) {
    TPlan plan;
    plan.call = Call::kAnyFileCall;
    plan.machine = machine;
    const std::uint64_t count = trial.CountCalls(plan.call, machine);
    for (const Action action : {Action::kKill, Action::kKillAfter}) {
      plan.action = action;
      std::vector<TStart> starts;
      for (const TPlan& each : PlansForEach(count, 1, plan)) starts.emplace_back().plan = each;
      trial.TryKills("killed at a file operation", starts);
    }
    plan.action = Action::kMove;
    for (const char* const directory : {"in", "out"}) {
      std::snprintf(plan.move_from, sizeof plan.move_from, "%s", directory);
      trial.TryPlans(std::string("the directory \"") + directory + "\" vanishes",
                     PlansForEach(count, 1, plan));
    }
  }
}

void KillAtRandom(TTrial& trial, const TCase& what, Extensiveness extensiveness) {
  constexpr int kCopies = 30;
  TCase larger{"larger tree", {"-r"}, {}, what.output_before};
  for (const auto& [path, entry] : what.input) {
    larger.input.emplace(path, entry);
    if (!IsFileEntry(entry) || !path.ends_with(".zaf")) continue;
    for (int copy = 0; copy < kCopies; ++copy)
      AddFile(larger.input, "copy" + std::to_string(copy) + "/" + path, entry.substr(1));
  }
  trial.Begin(larger);
  const auto time = trial.UndisturbedTime();
  // The same moments every time would find the same.
  std::mt19937_64 random(std::random_device{}());
  std::uniform_int_distribution<std::int64_t> moments(0, time.count());
  const int count = extensiveness == Extensiveness::kLong ? 1000 : 50;
  for (const Machine machine : {Machine::kUsual, Machine::kNoUnnamedFiles}) {
    std::vector<TStart> starts(static_cast<std::size_t>(count));
    for (TStart& start : starts) {
      start.plan.machine = machine;
      start.plan.action = Action::kKill;  // What is left is judged by it.
      start.killed_after = std::chrono::microseconds(moments(random));
    }
    trial.TryKills(
        machine == Machine::kUsual ? "killed at a random moment" : "the same without unnamed files",
        starts);
  }
}

}  // namespace zaf::faults
