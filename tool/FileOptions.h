#pragma once

#include <CLI/CLI.hpp>

#include "tool/RunOptions.h"

namespace zaf {

/// Adds the options that `convert` and `check` share, and the inputs. The options have to live as
/// long as the command.
void AddFileOptions(CLI::App& command, TRunOptions& options);

/// Brings what was parsed into the options and checks what the parser cannot. TToolError (kUsage).
void FinishFileOptions(const CLI::App& command, TRunOptions& options);

/// An option that can be given several times, with one value each.
template <class Values>
CLI::Option* AddRepeatable(CLI::App& command, const std::string& names, Values& values,
                           const std::string& description) {
  return command.add_option(names, values, description)->allow_extra_args(false);
}

}  // namespace zaf
