#include "tool/FileOptions.h"

#include <charconv>
#include <map>
#include <optional>
#include <string_view>

#include "tool/Terminal.h"

namespace zaf {
namespace {

constexpr unsigned kMostJobs = 1024;
constexpr const char* kInclude = "--include";
constexpr const char* kExclude = "--exclude";

/// Parses "K/N" with 1 <= K <= N; empty for any other text.
std::optional<TShard> ParseShard(std::string_view text) {
  TShard shard;
  const char* const end = text.data() + text.size();
  const auto [slash, error] = std::from_chars(text.data(), end, shard.number);
  if (error != std::errc() || slash == end || *slash != '/') return std::nullopt;
  const auto [rest, count_error] = std::from_chars(slash + 1, end, shard.count);
  const bool is_valid =
      count_error == std::errc() && rest == end && shard.number >= 1 && shard.number <= shard.count;
  return is_valid ? std::optional(shard) : std::nullopt;
}

/// The parser collects the values per option; their common order is that of the options.
void TakeGlobs(const CLI::App& command, TPathFilter& filter) {
  std::map<const CLI::Option*, std::size_t> taken;
  for (const CLI::Option* const option : command.parse_order()) {
    const bool is_include = option->get_name() == kInclude;
    if (!is_include && option->get_name() != kExclude) continue;
    filter.Add(is_include ? TPathFilter::Rule::kInclude : TPathFilter::Rule::kExclude,
               option->results().at(taken[option]++));
  }
}

}  // namespace

void AddFileOptions(CLI::App& command, TRunOptions& options) {
  command.add_option("INPUT", options.inputs, "Files, and directories with all below them");
  command.add_flag_callback(
      "--no-recurse", [&options] { options.recurse = false; }, "Do not go below the directories");
  command
      .add_option("-e,--extension", options.extensions,
                  "Extension of the files of directories, instead of zaf and zcf")
      ->allow_extra_args(false)  // Each time it takes one value.
      ->type_name("EXT");
  // TakeGlobs reads their values.
  for (const char* const name : {kInclude, kExclude})
    command.add_option(name)
        ->description(std::string(name == kInclude ? "Take" : "Leave out") +
                      " what matches below its INPUT; the last match counts")
        ->type_name("GLOB")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  command.add_option("--files-from", options.files_from, "Read further INPUTs, one a line")
      ->type_name("FILE");
  command.add_flag("-0,--null", options.is_null_separated, "They end with NULs, not line ends")
      ->needs("--files-from");
  command.add_option("--shard")
      ->description("Take the K-th of N parts")
      ->type_name("K/N")
      ->expected(1);
  command.add_option("--retry", options.retry, "Take the inputs that failed in this report")
      ->type_name("REPORT");
  command.add_flag("--fail-on-loss", options.fail_on_loss, "An input with losses has failed");
  command
      .add_option("--report", options.report, "Write a report, JSON Lines; - is standard output")
      ->type_name("FILE");
  command.add_option("-j,--jobs", options.jobs, "Convert as many files at a time")
      ->default_val(GetProcessorCount())
      ->check(CLI::Range(1U, kMostJobs).description({}))
      ->type_name("N");
  auto* const quiet = command.add_flag("-q,--quiet")->description("Print nothing but errors");
  command.add_flag("-v,--verbose")->description("Print each input and loss")->excludes(quiet);
  AddWord(command, "--progress", options.progress, kWhenWords, "Show the progress");
  AddWord(command, "--color", options.color, kWhenWords, "Colour the messages");
}

void FinishFileOptions(const CLI::App& command, TRunOptions& options) {
  const auto usage = [](const std::string& what) { return TToolError(ExitStatus::kUsage, what); };
  TakeGlobs(command, options.filter);
  if (command.count("--shard") > 0) {
    const std::optional<TShard> shard = ParseShard(command["--shard"]->as<std::string>());
    if (!shard) throw usage("--shard takes K/N, with K from 1 to N");
    options.shard = *shard;
  }
  if (command.count("--quiet") > 0) options.volume = Volume::kQuiet;
  if (command.count("--verbose") > 0) options.volume = Volume::kVerbose;
  for (std::string& extension : options.extensions) {
    if (extension.starts_with('.')) extension.erase(0, 1);
    if (extension.empty()) throw usage("An extension cannot be empty");
  }
  if (options.inputs.empty() && options.files_from.empty() && options.retry.empty())
    throw usage("There is no INPUT, --files-from or --retry");
  if (options.files_from == "-" && options.retry == "-")
    throw usage("--files-from and --retry cannot both read standard input");
}

}  // namespace zaf
