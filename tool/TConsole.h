#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

#include "tool/Messages.h"
#include "tool/RunOptions.h"

namespace zaf {

/// Writes to standard output. TToolError (kCannotWrite) when that fails.
void PrintData(std::string_view text);

/// Whether the words of messages are coloured that go to a terminal, or to none.
Coloring ChooseColoring(When when, bool is_terminal);

/// Standard error, with messages and, below them, a line of progress.
class TConsole {
 public:
  explicit TConsole(const TRunOptions& options);
  TConsole(const TConsole&) = delete;
  TConsole& operator=(const TConsole&) = delete;
  ~TConsole() { ClearProgress(); }

  [[nodiscard]] Coloring GetColoring() const { return coloring_; }
  [[nodiscard]] bool ShowsProgress() const { return shows_progress_; }

  void Print(std::string_view lines);

  /// Shows how many of `expected` inputs are done, but not more often than ten times a second.
  void ShowProgress(const TTotals& totals, std::uint64_t expected);
  void ClearProgress();

 private:
  using Clock = std::chrono::steady_clock;

  Coloring coloring_;
  bool shows_progress_;
  bool has_line_ = false;
  Clock::time_point begin_ = Clock::now();
  Clock::time_point last_ = begin_;
};

}  // namespace zaf
