#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace zaf {

/// Runs the chosen command and returns the exit status.
using CommandAction = std::function<int()>;

// Each adds a command to the program. When that is chosen, parsing sets `action`.

void AddConvertCommand(CLI::App& program, CommandAction& action);
void AddCheckCommand(CLI::App& program, CommandAction& action);
void AddShowCommand(CLI::App& program, CommandAction& action);
void AddDiffCommand(CLI::App& program, CommandAction& action);
void AddCompletionCommand(CLI::App& program, CommandAction& action);

}  // namespace zaf
