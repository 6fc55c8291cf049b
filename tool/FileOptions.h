#pragma once

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "tool/RunOptions.h"

namespace zaf {

/// Adds the options that `convert` and `check` share, and the inputs. The options must outlive the
/// command.
void AddFileOptions(CLI::App& command, TRunOptions& options);

/// Completes the options from what was parsed and checks what the parser cannot. Throws TToolError
/// (kUsage).
void FinishFileOptions(const CLI::App& command, TRunOptions& options);

/// The keywords of an option and their values, in the order of its help.
template <class Value>
using TWords = std::vector<std::pair<std::string, Value>>;

inline const TWords<When> kWhenWords{
    {"auto", When::kAuto}, {"always", When::kAlways}, {"never", When::kNever}};

/// Adds an option whose value is one of several keywords.
template <class Value>
void AddWord(CLI::App& command, const std::string& name, Value& value, const TWords<Value>& words,
             const std::string& description) {
  std::string names;
  for (const auto& [word, meaning] : words) names += (names.empty() ? "" : "|") + word;
  const auto take = [&value, words, name, names](const std::string& text) {
    const auto found = std::ranges::find(words, text, &std::pair<std::string, Value>::first);
    if (found == words.end()) throw CLI::ValidationError(name, "takes " + names);
    value = found->second;
  };
  command.add_option_function<std::string>(name, take, description)->type_name(names);
}

}  // namespace zaf
