#include "tool/TConsole.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tool/Terminal.h"

namespace zaf {
namespace {

void Write(std::string_view text) {
  // A failure here cannot be reported.
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
  static_cast<void>(std::fflush(stderr));
}

bool IsWanted(When when, bool usual) {
  return when == When::kAlways || (when == When::kAuto && usual);
}

/// The value of an environment variable; empty if it is not set.
std::string_view Environment(const char* variable) {
  const char* const value = std::getenv(variable);
  return value == nullptr ? std::string_view() : value;
}

std::string FormatTime(double seconds) {
  const auto whole = static_cast<std::uint64_t>(std::ceil(seconds));
  return Format("%llu:%02llu", static_cast<unsigned long long>(whole / 60),
                static_cast<unsigned long long>(whole % 60));
}

}  // namespace

void PrintData(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
    throw TToolError(ExitStatus::kCannotWrite, "Standard output cannot be written");
}

Coloring ChooseColoring(When when, bool is_terminal) {
  const bool is_usual =
      is_terminal && Environment("NO_COLOR").empty() && Environment("TERM") != "dumb";
  return IsWanted(when, is_usual) ? Coloring::kOn : Coloring::kOff;
}

TConsole::TConsole(const TRunOptions& options)
    : coloring_(ChooseColoring(options.color, IsTerminal(stderr))),
      shows_progress_(
          IsWanted(options.progress, IsTerminal(stderr) && options.volume != Volume::kQuiet)) {}

void TConsole::Print(std::string_view lines) {
  if (lines.empty()) return;
  ClearProgress();
  Write(lines);
}

void TConsole::ShowProgress(const TTotals& totals, std::uint64_t expected) {
  constexpr std::chrono::milliseconds kInterval{100};
  const Clock::time_point now = Clock::now();
  if (!shows_progress_ || now - last_ < kInterval || totals.inputs == 0) return;
  last_ = now;
  expected =
      std::max(expected, totals.inputs);  // Files may have been added since they were counted.
  const double seconds = std::chrono::duration<double>(now - begin_).count();
  const auto done = static_cast<double>(totals.inputs);
  const double part = done / static_cast<double>(expected);
  const auto bytes = static_cast<double>(totals.bytes_in);
  std::string line = std::to_string(static_cast<int>(100 * part)) + " %, " +
                     std::to_string(totals.inputs) + " of " + std::to_string(expected) +
                     " files, " + FormatBytes(bytes) + ", " + FormatBytes(bytes / seconds) +
                     "/s, " + FormatTime(seconds / part - seconds) + " left, " +
                     std::to_string(totals.failed) + " failed";
  line.resize(std::min(line.size(), GetTerminalWidth() - 1));
  Write("\r" + line + "\x1b[K");
  has_line_ = true;
}

void TConsole::ClearProgress() {
  if (has_line_) Write("\r\x1b[K");
  has_line_ = false;
}

}  // namespace zaf
