#pragma once

#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "faults/Program.h"
#include "faults/Verdict.h"

namespace zaf::faults {

/// A conversion that is to be disturbed.
struct TCase {
  std::string name;
  std::vector<std::string> options;  ///< Without the directories.
  TTree input;
  TTree output_before;
};

/// One line of the result.
struct TRow {
  std::string kind;
  std::size_t point_count = 0;
  std::size_t outcome_counts[kOutcomeCount] = {};  ///< By Outcome.
};

/// The directories of one worker; all workers' have names of one length, so that they make the same
/// allocations.
class TSandbox {
 public:
  explicit TSandbox(std::filesystem::path root);
  [[nodiscard]] const std::filesystem::path& Root() const { return root_; }
  [[nodiscard]] std::filesystem::path Input() const { return root_ / "in"; }
  [[nodiscard]] std::filesystem::path Output() const { return root_ / "out"; }
  /// The directories' names while a plan has moved them away.
  [[nodiscard]] std::filesystem::path MovedInput() const { return root_ / "moved-in"; }
  [[nodiscard]] std::filesystem::path MovedOutput() const { return root_ / "moved-out"; }

  /// Gives both directories their names back and the output directory its first content.
  void Restore(const TCase& what) const;
  [[nodiscard]] std::vector<std::string> Arguments(const TCase& what) const;
  [[nodiscard]] TFindings Look() const;

 private:
  std::filesystem::path root_;
};

/// Tries the faults of a case, several at a time, and keeps the results.
class TTrial {
 public:
  /// Makes `worker_count` sandboxes (up to 10) in the directory `work`.
  TTrial(const TProgram& program, const std::filesystem::path& work, unsigned worker_count);

  /// Takes a case and what becomes of it without a fault, with and without the injector. Throws
  /// when that is not what it should be.
  void Begin(const TCase& what);

  /// How often the undisturbed case makes a call, on one kind of machine.
  [[nodiscard]] std::uint64_t CountCalls(Call call, Machine machine);
  [[nodiscard]] const TExpectation& Expected() const { return expected_; }
  [[nodiscard]] std::chrono::microseconds UndisturbedTime() const { return time_; }
  [[nodiscard]] const TCase& Current() const { return case_; }
  [[nodiscard]] const TSandbox& FirstSandbox() const { return sandboxes_.front(); }

  /// Tries each plan once and adds to the row of that kind.
  void TryPlans(const std::string& kind, const std::vector<TPlan>& plans);
  /// The same for plans that kill the program, or for kills after a time. Afterwards another run
  /// has to complete the tree.
  void TryKills(const std::string& kind, const std::vector<TStart>& starts);
  /// The same for one start in the first sandbox as it stands, by the rules of the plan.
  void TryOnce(const std::string& kind, const TStart& start);

  /// Adds a result that was found elsewhere.
  void Count(const std::string& kind, const TStart& start, const TVerdict& verdict);

  [[nodiscard]] TRun Run(const TSandbox& sandbox, TStart start) const;
  [[nodiscard]] const std::vector<TRow>& Rows() const { return rows_; }
  [[nodiscard]] bool HasViolations() const;

 private:
  using Job = std::function<void(const TSandbox& sandbox, std::size_t index)>;
  void RunJobs(std::size_t count, const Job& job) const;
  [[nodiscard]] TVerdict TryKill(const TSandbox& sandbox, const TStart& start) const;

  const TProgram& program_;
  std::vector<TSandbox> sandboxes_;
  TCase case_;
  TExpectation expected_;
  std::chrono::microseconds time_{};
  std::mutex mutex_;  ///< Of what follows.
  std::vector<TRow> rows_;
};

/// A plan in the words that the program understands behind "only".
std::string Describe(const TPlan& plan);
/// The other way round; throws when there is anything that it does not know.
TPlan ParsePlan(const std::vector<std::string>& words);

}  // namespace zaf::faults
