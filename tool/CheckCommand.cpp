#include <memory>

#include "tool/Commands.h"
#include "tool/FileOptions.h"
#include "tool/FileRun.h"

namespace zaf {

void AddCheckCommand(CLI::App& program, CommandAction& action) {
  CLI::App* const command =
      program.add_subcommand("check", "Convert in memory, read back and compare; write no output");
  const auto options = std::make_shared<TRunOptions>();
  options->command = FileCommand::kCheck;
  AddFileOptions(*command, *options);
  command->callback([command, options, &action] {
    FinishFileOptions(*command, *options);
    action = [options] { return RunFiles(*options); };
  });
}

}  // namespace zaf
