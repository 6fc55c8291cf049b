#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "faults/Plan.h"

namespace zaf::faults {

/// Where the standard error stream of the program leads.
enum class Terminal {
  kRead,    ///< To us.
  kClosed,  ///< Nowhere: the descriptor is closed.
  kFull,    ///< To a device that takes nothing.
  kBroken,  ///< Into a pipe that nobody reads any more.
};

/// One start of the program under test.
struct TStart {
  std::vector<std::string> arguments;  ///< Without the program's own name.
  TPlan plan;
  std::optional<std::chrono::microseconds> killed_after;
  Terminal terminal = Terminal::kRead;
  bool is_alone = false;  ///< Without the injector.
};

/// What became of it.
struct TRun {
  int status = 0;         ///< As wait gives it.
  bool is_stuck = false;  ///< It had to be ended after kPatience.
  std::string messages;
  TReport report;
  std::chrono::microseconds time{};
};

inline constexpr std::chrono::seconds kPatience{60};

/// Starts the program under the injector, as often as wanted and in several threads at once.
class TProgram {
 public:
  TProgram(std::filesystem::path program, std::filesystem::path injector)
      : program_(std::move(program)), injector_(std::move(injector)) {}

  /// Starts it and waits for its end. Throws when it cannot be started.
  [[nodiscard]] TRun Run(const TStart& start) const;

 private:
  std::filesystem::path program_;
  std::filesystem::path injector_;
};

}  // namespace zaf::faults
