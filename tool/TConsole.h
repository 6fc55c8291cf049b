#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

#include "tool/Messages.h"
#include "tool/RunOptions.h"

namespace zaf {

/// Writes to standard output. TToolError (kCannotWrite) when that fails.
void PrintData(std::string_view text);

/// Whether to colour messages, which go to a terminal if `is_terminal`.
Coloring ChooseColoring(When when, bool is_terminal);

/// Standard error with messages and, after them, a progress line.
class TConsole {
 public:
  explicit TConsole(const TRunOptions& options);
  TConsole(const TConsole&) = delete;
  TConsole& operator=(const TConsole&) = delete;
  ~TConsole() { ClearProgress(); }

  [[nodiscard]] Coloring GetColoring() const { return coloring_; }
  [[nodiscard]] bool ShowsProgress() const { return shows_progress_; }

  void Print(std::string_view lines);

  /// Shows the progress out of `expected` inputs, at most ten times a second.
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
