#include "faults/Trial.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace zaf::faults {
namespace {

namespace fs = std::filesystem;

constexpr const char* kActionNames[] = {"none", "fail", "shorten", "kill", "kill-after", "move"};
constexpr const char* kExtentNames[] = {"once", "onwards"};
constexpr const char* kMachineNames[] = {"usual", "no-unnamed-files", "no-links"};

template <class Value, std::size_t count>
Value ParseName(const char* const (&names)[count], const std::string& word) {
  for (std::size_t i = 0; i < count; ++i)
    if (word == names[i]) return static_cast<Value>(i);
  throw std::runtime_error("what is \"" + word + "\"?");
}

template <class Value, std::size_t count>
const char* NameOf(const char* const (&names)[count], Value value) {
  return names[static_cast<std::size_t>(value)];
}

void SetPath(char (&field)[kPathSize], const fs::path& path) {
  if (path.native().size() >= kPathSize) throw std::runtime_error("the work directory is too deep");
  std::memcpy(field, path.c_str(), path.native().size() + 1);
}

/// A plan that moves a directory says only "in" or "out", as each sandbox has its own.
void SetMove(const TSandbox& sandbox, TPlan& plan) {
  if (plan.action != Action::kMove) return;
  const bool is_input = std::strcmp(plan.move_from, "in") == 0;
  SetPath(plan.move_from, is_input ? sandbox.Input() : sandbox.Output());
  SetPath(plan.move_to, is_input ? sandbox.MovedInput() : sandbox.MovedOutput());
}

/// What is left without the temporary files of runs that were killed.
TTree WithoutTemporaries(TTree tree) {
  std::erase_if(tree, [](const auto& entry) { return IsTemporary(entry.first); });
  return tree;
}

}  // namespace

std::string Describe(const TPlan& plan) {
  std::string text = std::string(NameOf(kCallNames, plan.call)) + "' " +
                     std::to_string(plan.number) + " " + NameOf(kActionNames, plan.action) + " " +
                     std::to_string(plan.error) + " " + NameOf(kExtentNames, plan.extent) + " " +
                     NameOf(kMachineNames, plan.machine);
  if (plan.action == Action::kMove) text.append(" ").append(plan.move_from);
  if (plan.limited_resource >= 0)
    text += " (limit " + std::to_string(plan.limited_resource) + ": " + std::to_string(plan.limit) +
            ")";
  return "'" + text;
}

TPlan ParsePlan(const std::vector<std::string>& words) {
  if (words.size() < 6) throw std::runtime_error("a plan has six words");
  TPlan plan;
  plan.call = ParseName<Call>(kCallNames, words[0]);
  plan.number = std::stoull(words[1]);
  plan.action = ParseName<Action>(kActionNames, words[2]);
  plan.error = std::stoi(words[3]);
  plan.extent = ParseName<Extent>(kExtentNames, words[4]);
  plan.machine = ParseName<Machine>(kMachineNames, words[5]);
  if (words.size() > 6) SetPath(plan.move_from, words[6]);
  return plan;
}

TSandbox::TSandbox(fs::path root) : root_(std::move(root)) {
  fs::create_directories(Input());
  fs::create_directories(Output());
}

void TSandbox::Restore(const TCase& what) const {
  if (fs::exists(MovedInput())) fs::rename(MovedInput(), Input());
  if (fs::exists(MovedOutput())) fs::rename(MovedOutput(), Output());
  WriteTree(what.output_before, Output());
}

std::vector<std::string> TSandbox::Arguments(const TCase& what) const {
  std::vector<std::string> arguments = what.options;
  arguments.insert(arguments.end(), {"-i", Input(), Output()});
  return arguments;
}

TFindings TSandbox::Look() const {
  return {ReadTree(fs::exists(MovedInput()) ? MovedInput() : Input()),
          ReadTree(fs::exists(MovedOutput()) ? MovedOutput() : Output())};
}

TTrial::TTrial(const TProgram& program, const fs::path& work, unsigned worker_count)
    : program_(program) {
  for (unsigned i = 0; i < worker_count; ++i) sandboxes_.emplace_back(work / std::to_string(i));
}

TRun TTrial::Run(const TSandbox& sandbox, TStart start) const {
  start.arguments = sandbox.Arguments(case_);
  SetPath(start.plan.output, sandbox.Output());
  SetMove(sandbox, start.plan);
  return program_.Run(start);
}

void TTrial::Begin(const TCase& what) {
  case_ = what;
  for (const TSandbox& sandbox : sandboxes_) {
    sandbox.Restore(what);
    WriteTree(what.input, sandbox.Input());
  }
  const TSandbox& sandbox = sandboxes_.front();
  expected_ = {};
  expected_.input = what.input;
  expected_.output_before = what.output_before;
  TStart alone;
  alone.is_alone = true;
  static_cast<void>(Run(sandbox, alone));
  const TTree output = sandbox.Look().output;
  sandbox.Restore(what);
  const TRun run = Run(sandbox, {});
  time_ = run.time;
  expected_.output = sandbox.Look().output;
  expected_.live_blocks = run.report.live_blocks;
  if (!ReadEvents(run.messages, expected_.events))
    throw std::runtime_error(what.name + ": it said: " + run.messages);
  if (run.status != 0 || output != expected_.output || output == what.output_before)
    throw std::runtime_error(what.name + ": the undisturbed conversion is not as it should be");
}

std::uint64_t TTrial::CountCalls(Call call, Machine machine) {
  sandboxes_.front().Restore(case_);
  TStart start;
  start.plan.machine = machine;
  return Run(sandboxes_.front(), start).report.counts[static_cast<std::size_t>(call)];
}

void TTrial::RunJobs(std::size_t count, const Job& job) const {
  std::atomic<std::size_t> next = 0;
  std::vector<std::exception_ptr> failures(sandboxes_.size());
  {
    std::vector<std::jthread> threads;
    for (std::size_t worker = 0; worker < sandboxes_.size(); ++worker)
      threads.emplace_back([&, worker] {
        try {
          for (std::size_t i = next++; i < count; i = next++) job(sandboxes_[worker], i);
        } catch (...) {
          failures[worker] = std::current_exception();
        }
      });
  }
  for (const std::exception_ptr& failure : failures)
    if (failure) std::rethrow_exception(failure);
}

void TTrial::TryPlans(const std::string& kind, const std::vector<TPlan>& plans) {
  RunJobs(plans.size(), [&](const TSandbox& sandbox, std::size_t index) {
    sandbox.Restore(case_);
    TStart start;
    start.plan = plans[index];
    const TRun run = Run(sandbox, start);
    TVerdict verdict = JudgeRun(expected_, start.plan, run, sandbox.Look());
    if (verdict.outcome != Outcome::kViolation && start.plan.number != 0 && !run.report.has_struck)
      verdict = {Outcome::kViolation, "the call was not made"};
    Count(kind, start, verdict);
  });
}

TVerdict TTrial::TryKill(const TSandbox& sandbox, const TStart& start) const {
  sandbox.Restore(case_);
  static_cast<void>(Run(sandbox, start));
  TVerdict verdict = JudgeKilled(expected_, start.plan, sandbox.Look());
  if (verdict.outcome == Outcome::kViolation) return verdict;
  const TRun again = Run(sandbox, {});
  const TFindings found = sandbox.Look();
  std::vector<Event> events;
  // What the first run made exists now, which the second one says of each.
  if (again.status != 0 || again.is_stuck || !ReadEvents(again.messages, events))
    return {Outcome::kViolation, "the next run failed: " + again.messages};
  TTree output = WithoutTemporaries(found.output);
  for (const auto& [path, entry] : expected_.input)
    if (entry == DirectoryEntry() && !expected_.output.contains(path)) output.erase(path);
  if (output != expected_.output || found.input != expected_.input)
    return {Outcome::kViolation, "the next run did not complete the tree"};
  return verdict;
}

void TTrial::TryKills(const std::string& kind, const std::vector<TStart>& starts) {
  RunJobs(starts.size(), [&](const TSandbox& sandbox, std::size_t index) {
    Count(kind, starts[index], TryKill(sandbox, starts[index]));
  });
}

void TTrial::TryOnce(const std::string& kind, const TStart& start) {
  const TSandbox& sandbox = sandboxes_.front();
  const TRun run = Run(sandbox, start);
  Count(kind, start, JudgeRun(expected_, start.plan, run, sandbox.Look()));
}

void TTrial::Count(const std::string& kind, const TStart& start, const TVerdict& verdict) {
  const std::lock_guard lock(mutex_);
  auto row = std::ranges::find(rows_, kind, &TRow::kind);
  if (row == rows_.end()) row = rows_.insert(rows_.end(), {kind});
  ++row->point_count;
  ++row->outcome_counts[static_cast<std::size_t>(verdict.outcome)];
  if (verdict.outcome != Outcome::kViolation) return;
  std::string complaint = verdict.complaint;
  std::ranges::replace(complaint, '\n', ' ');
  std::printf("VIOLATION in \"%s\", %s: %s\n    '%s' %s\n", case_.name.c_str(), kind.c_str(),
              complaint.c_str(), case_.name.c_str(), Describe(start.plan).c_str());
}

bool TTrial::HasViolations() const {
  constexpr auto kIndex = static_cast<std::size_t>(Outcome::kViolation);
  return std::ranges::any_of(rows_,
                             [](const TRow& row) { return row.outcome_counts[kIndex] != 0; });
}

}  // namespace zaf::faults
