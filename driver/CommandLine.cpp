#include "driver/CommandLine.h"

#include <string_view>

#include "foundation/Heap.h"

namespace zaf {
namespace {

/// The argument of an option, and its effect.
enum class OptionKind {
  kFlag,       ///< No argument.
  kHelp,       ///< No argument; ends the program.
  kWord,       ///< The next argument, unchanged.
  kQuotable,   ///< A value that may be quoted.
  kDirectory,  ///< The same; the directory is entered.
};

struct TOption {
  std::string_view long_name;
  std::string_view short_name;  ///< The long name again if the option has none.
  OptionKind kind;
  bool ConversionOptions::*flag;   ///< The flag to set; null if none.
  CText ConversionOptions::*text;  ///< Receives the value; null if none.
  std::string_view message;        ///< The message for an invalid value.
};

using Opts = ConversionOptions;
using enum OptionKind;
using namespace messages;

constexpr TOption kOptions[] = {
    {"-verify", "-v", kFlag, &Opts::verify, nullptr, {}},
    {"-debug", "-debug", kFlag, &Opts::debug, nullptr, {}},
    {"-extension", "-e", kWord, nullptr, &Opts::extension, kBadExtension},
    {"-help", "-h", kHelp, nullptr, nullptr, {}},
    {"-suffix", "-s", kWord, nullptr, &Opts::suffix, kBadSuffix},
    {"-filename", "-f", kQuotable, &Opts::input_name_given, &Opts::input_name, kBadInputName},
    {"-recurse", "-r", kFlag, &Opts::recurse, nullptr, {}},
    {"-output", "-o", kQuotable, &Opts::output_name_given, &Opts::output_name, kBadOutputName},
    {"-input", "-i", kDirectory, nullptr, &Opts::input_directory, kBadInput},
};

/// The option with this name, ignoring case; null if not found.
const TOption* FindOption(std::string_view name) {
  for (const TOption& option : kOptions)
    if (EqualsIgnoringCase(name, option.long_name) || EqualsIgnoringCase(name, option.short_name))
      return &option;
  return nullptr;
}

void PrintUsage(const MessageSink& report) {
  for (const std::string_view line : kUsage) report(line);
}

/// Reads the value at `index` for an option and moves `index` to its last argument.
bool TakeValue(const TOption& option, Arguments arguments, std::size_t& index,
               const MessageSink& report, CText& value) {
  if (option.kind == kWord) {
    const std::string_view word = arguments[index];
    // The output directory must follow the value.
    if (word.starts_with('-') || index + 1 == arguments.size()) return false;
    value = word;
    return true;
  }
  if (NormaliseParameter(arguments, index, report, value) == ParameterForm::kInvalid) return false;
  return option.kind != kDirectory || EnterDirectory(value);
}

/// Reads the options that come first and moves `index` to the first argument after them. The last
/// argument is never an option. False when the program must stop.
bool TakeOptions(Arguments arguments, std::size_t& index, const MessageSink& report,
                 ConversionOptions& options) {
  for (; index + 1 < arguments.size(); ++index) {
    const TOption* const option = FindOption(arguments[index]);
    if (option == nullptr) return true;
    if (option->kind == kHelp) {
      PrintUsage(report);
      return false;
    }
    if (option->flag != nullptr) options.*option->flag = true;
    if (option->text == nullptr) continue;
    ++index;
    if (!TakeValue(*option, arguments, index, report, options.*option->text)) {
      report(option->message);
      return false;
    }
  }
  return true;
}

/// Reads the output directory at `index` and enters it. False when the program must stop.
bool TakeOutputDirectory(Arguments arguments, std::size_t index, const MessageSink& report,
                         ConversionOptions& options) {
  // As the last argument only these are options, and only in lower case.
  if (const std::string_view last = arguments[index]; last == "-help" || last == "-h") {
    PrintUsage(report);
    return false;
  }
  const ParameterForm form = NormaliseParameter(arguments, index, report, options.output_directory);
  if (form == ParameterForm::kInvalid || !EnterDirectory(options.output_directory)) {
    report(kBadOutput);
    return false;
  }
  if (options.recurse) options.output_identity = GetWorkingDirectoryIdentity();
  return true;
}

void DeriveTexts(ConversionOptions& options) {
  options.dotted_extension = ".";
  options.dotted_extension.Append(options.extension);
  options.search_pattern = "*";
  options.search_pattern.Append(options.dotted_extension);
  options.dotted_suffix = ".";
  options.dotted_suffix.Append(options.suffix);
}

/// Implements ParseCommandLine, unless memory runs out.
std::optional<ConversionOptions> ReadOptions(Arguments arguments, const MessageSink& report) {
  if (arguments.size() <= 1) {
    PrintUsage(report);
    return std::nullopt;
  }
  ConversionOptions options;
  std::size_t index = 1;
  if (!TakeOptions(arguments, index, report, options)) return std::nullopt;
  if (options.input_directory.IsEmpty() && !GetWorkingDirectory(options.input_directory)) {
    report(kNoWorkingDirectory);
    return std::nullopt;
  }
  if (index >= arguments.size()) {
    report(kBadCommandLine);
    return std::nullopt;
  }
  // Here the working directory is the input directory; later it is the output directory.
  std::optional<TFileIdentity> input_identity;
  if (kDirectoriesHaveManyNames) input_identity = GetWorkingDirectoryIdentity();
  if (!TakeOutputDirectory(arguments, index, report, options)) return std::nullopt;
  if (!options.output_name.IsEmpty() && !options.input_name_given) {
    report(kOutputNameWithoutInputName);
    return std::nullopt;
  }
  DeriveTexts(options);
  if (options.input_directory.View() == options.output_directory.View() ||
      (input_identity && input_identity == GetWorkingDirectoryIdentity())) {
    report(kSameDirectory);
    return std::nullopt;
  }
  return options;
}

}  // namespace

ParameterForm NormaliseParameter(Arguments arguments, std::size_t& index, const MessageSink& report,
                                 CText& value) {
  constexpr char kQuote = '\'';
  std::string_view piece = arguments[index];
  if (!piece.starts_with(kQuote)) {
    value = piece;
    return ParameterForm::kSingle;
  }
  if (piece.ends_with(kQuote)) {
    piece.remove_prefix(1);
    if (!piece.empty()) piece.remove_suffix(1);  // A lone quote both opens and closes.
    value = piece;
    return ParameterForm::kSingle;
  }
  if (index + 1 == arguments.size()) {
    report(kMismatchedQuotes);
    return ParameterForm::kInvalid;
  }
  CText joined(piece.substr(1));
  do {
    if (index + 1 == arguments.size()) {
      report(kUnwrappedSpaces);
      return ParameterForm::kInvalid;
    }
    piece = arguments[++index];
    joined.Append(' ');
    joined.Append(piece.ends_with(kQuote) ? piece.substr(0, piece.size() - 1) : piece);
  } while (!piece.ends_with(kQuote));
  value = joined;
  return ParameterForm::kJoined;
}

std::optional<ConversionOptions> ParseCommandLine(Arguments arguments, const MessageSink& report) {
  const heap::TMemoryWatch memory;
  std::optional<ConversionOptions> options = ReadOptions(arguments, report);
  // Texts that are incomplete because memory ran out would name other files and directories.
  if (options && memory.HasRunOut()) {
    report(kBadCommandLine);
    return std::nullopt;
  }
  return options;
}

}  // namespace zaf
