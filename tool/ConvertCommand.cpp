#include <memory>

#include "tool/Commands.h"
#include "tool/FileOptions.h"
#include "tool/FileRun.h"

namespace zaf {
namespace {

const TWords<TargetForm> kTargetWords{{"xml", TargetForm::kXml}, {"legacy", TargetForm::kLegacy}};
const TWords<ExistingOutput> kExistingWords{{"fail", ExistingOutput::kFail},
                                            {"skip", ExistingOutput::kSkip},
                                            {"overwrite", ExistingOutput::kOverwrite},
                                            {"newer", ExistingOutput::kNewer}};

void Finish(const CLI::App& command, TRunOptions& options) {
  FinishFileOptions(command, options);
  const auto usage = [](const char* what) { return TToolError(ExitStatus::kUsage, what); };
  const bool writes_standard_output = options.output == "-" || options.dry_run;
  if (writes_standard_output && options.report == "-")
    throw usage("The report cannot go to standard output together with other data");
  if (options.suffix.starts_with('.')) options.suffix.erase(0, 1);
  if (command.count("--suffix") == 0)
    options.suffix = options.target == TargetForm::kLegacy ? "zaf" : "xzf";
  else if (options.suffix.empty())
    throw usage("The suffix cannot be empty");
}

}  // namespace

void AddConvertCommand(CLI::App& program, CommandAction& action) {
  CLI::App* const command = program.add_subcommand("convert", "Convert files and whole trees");
  const auto options = std::make_shared<TRunOptions>();
  AddFileOptions(*command, *options);
  command
      ->add_option("-o,--output", options->output,
                   "The output file of one input file, else a directory; - is standard output")
      ->required()
      ->type_name("OUTPUT");
  AddWord(*command, "--to", options->target, kTargetWords, "The form of the outputs");
  command->add_option("-s,--suffix", options->suffix, "Extension of the outputs: xzf, legacy zaf")
      ->type_name("EXT");
  AddWord(*command, "--existing", options->existing, kExistingWords,
          "What happens to an existing output");
  command->add_flag("--verify", options->verify, "Read each output back and compare");
  command->add_flag("--keep-time", options->keep_time, "Give outputs the times of their inputs");
  command->add_flag("-n,--dry-run", options->dry_run, "Print what would be written to where");
  command->callback([command, options, &action] {
    Finish(*command, *options);
    action = [options] { return RunFiles(*options); };
  });
}

}  // namespace zaf
