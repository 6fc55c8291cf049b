#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "appfile/Differences.h"
#include "appfile/TZanfoFile.h"
#include "driver/FileConversion.h"
#include "foundation/Attempt.h"
#include "tool/Commands.h"
#include "tool/FileOptions.h"
#include "tool/Messages.h"
#include "tool/TConsole.h"
#include "tool/Terminal.h"

namespace zaf {
namespace {

constexpr auto kUnreadable = ExitStatus::kUsage;  ///< For a file that cannot be read.

struct TDiffOptions {
  std::string one;
  std::string two;
  DifferenceScope scope = DifferenceScope::kXmlForm;
  bool is_json = false;
  bool is_quiet = false;
  When color = When::kAuto;
};

/// Prints each difference: as a line, or as an object of the array described by
/// share/zaf-diff.schema.json.
class TPrinter final : public TDifferenceObserver {
 public:
  explicit TPrinter(const TDiffOptions& options)
      : options_(options), coloring_(ChooseColoring(options.color, IsTerminal(stdout))) {}

  void OnDifference(const TDifference& difference) override {
    const bool is_first = !std::exchange(has_differences_, true);
    if (options_.is_quiet) return;
    if (options_.is_json)
      Print((is_first ? "[\n" : ",\n") + JsonOf(difference));
    else
      Print(DifferenceMessage(difference, coloring_));
  }

  /// Returns whether there were differences. Throws TToolError when they could not be printed.
  bool Finish() {
    if (options_.is_json && !options_.is_quiet) Print(has_differences_ ? "\n]\n" : "[]\n");
    if (has_failed_ || std::fflush(stdout) != 0)
      throw TToolError(ExitStatus::kCannotWrite, "Standard output cannot be written");
    return has_differences_;
  }

 private:
  static std::string JsonOf(const TDifference& difference) {
    using Json = nlohmann::ordered_json;
    const auto text = [](std::optional<std::string_view> value) {
      return value ? Json(ToUtf8(*value)) : Json();
    };
    const auto if_set = [](bool is_set, std::string_view value) {
      return is_set ? std::optional(value) : std::nullopt;
    };
    const Json object{
        {"action", text(if_set(difference.is_of_action, difference.subject))},
        {"field", text(if_set(!difference.field.empty(), difference.field))},
        {"kind", DifferenceWord(difference.kind)},
        {"from", text(difference.from)},
        {"to", text(difference.to)},
    };
    return object.dump();
  }

  void Print(const std::string& text) {
    has_failed_ |= std::fwrite(text.data(), 1, text.size(), stdout) != text.size();
  }

  const TDiffOptions& options_;
  const Coloring coloring_;
  bool has_differences_ = false;
  bool has_failed_ = false;
};

/// Loads a file. Prints an error when it cannot be read.
bool Load(const std::string& path, When color, TZanfoFile& document) {
  TInputRecord record;
  record.input.path = path;
  TDataFile file;
  if (LoadInput(std::string_view(path), file, document, record.result)) return true;
  record.error = ErrorOfReading(record);
  const Coloring coloring = ChooseColoring(color, IsTerminal(stderr));
  std::fputs(ErrorMessage(record, coloring).c_str(), stderr);
  return false;
}

int Diff(const TDiffOptions& options) {
  TZanfoFile one;
  TZanfoFile two;
  const bool has_one = Load(options.one, options.color, one);
  const bool has_two = Load(options.two, options.color, two);
  if (!has_one || !has_two) return static_cast<int>(kUnreadable);
  TPrinter printer(options);
  const auto find = [&] {
    FindDifferences(one.GetApplication(), two.GetApplication(), options.scope, printer);
    return true;
  };
  if (!Attempt(find, false)) throw TToolError(kUnreadable, "Memory ran out");
  return static_cast<int>(printer.Finish() ? ExitStatus::kFailed : ExitStatus::kDone);
}

}  // namespace

void AddDiffCommand(CLI::App& program, CommandAction& action) {
  CLI::App* const command = program.add_subcommand("diff", "Print in what two applications differ");
  const auto options = std::make_shared<TDiffOptions>();
  command->add_option("A", options->one, "The first file, of any form")->required();
  command->add_option("B", options->two, "The other file")->required();
  command->add_flag_callback(
      "--all", [options] { options->scope = DifferenceScope::kEverything; },
      "Print also what the XML form does not hold");
  command->add_flag("--json", options->is_json, "Print the differences as JSON");
  command->add_flag("-q,--quiet", options->is_quiet, "Print nothing but errors");
  AddWord(*command, "--color", options->color, kWhenWords, "Colour the names");
  command->callback([options, &action] { action = [options] { return Diff(*options); }; });
}

}  // namespace zaf
