#pragma once

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "tool/RunOptions.h"

namespace zaf {

/// Adds the options that `convert` and `check` share, and the inputs. The options have to outlive
/// the command.
void AddFileOptions(CLI::App& command, TRunOptions& options);

/// Brings what was parsed into the options and checks what the parser cannot. TToolError (kUsage).
void FinishFileOptions(const CLI::App& command, TRunOptions& options);

/// The words of an option and what they mean, in the order of its help.
template <class Value>
using TWords = std::vector<std::pair<std::string, Value>>;

inline const TWords<When> kWhenWords{
    {"auto", When::kAuto}, {"always", When::kAlways}, {"never", When::kNever}};

/// An option that takes one of some words.
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

/// An option that can be given several times, with one value each.
template <class Values>
CLI::Option* AddRepeatable(CLI::App& command, const std::string& names, Values& values,
                           const std::string& description) {
  return command.add_option(names, values, description)->allow_extra_args(false);
}

}  // namespace zaf
