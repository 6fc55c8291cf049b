#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <sstream>
#include <string>
#include <vector>

#include "foundation/FileSystem.h"
#include "tool/Commands.h"
#include "tool/RunOptions.h"
#include "tool/TConsole.h"
#include "tool/Terminal.h"
#include "tool/Version.h"

namespace {

int Fail(zaf::ExitStatus status, const char* what) {
  std::fprintf(stderr, "zaf: error: %s\n", what);
  return static_cast<int>(status);
}

/// Handles the parser's own errors, and help or the version, which are not errors.
int EndParsing(const CLI::App& program, const CLI::ParseError& end) {
  if (end.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
    std::ostringstream text;
    program.exit(end, text, text);
    zaf::PrintData(text.str());
    return static_cast<int>(zaf::ExitStatus::kDone);
  }
  const std::vector<std::string> unknown = program.remaining();
  if (program.get_subcommands().empty() && !unknown.empty())
    return Fail(zaf::ExitStatus::kUsage,
                ("There is no command or option " + unknown.front()).c_str());
  return Fail(zaf::ExitStatus::kUsage, end.what());
}

/// TToolError (kUsage) for a value that is empty, as that of a variable that is not set.
void RefuseEmptyValues(const CLI::App& program) {
  for (const CLI::App* const command : program.get_subcommands())
    for (const CLI::Option* const option : command->parse_order())
      for (const std::string& value : option->results())
        if (value.empty())
          throw zaf::TToolError(zaf::ExitStatus::kUsage, option->get_name() + " cannot be empty");
}

}  // namespace

#ifdef _WIN32
#define main wmain
#endif

int main(int argument_count, zaf::TArgumentCharacter** argument_values) {
  try {
    const zaf::TArguments arguments(argument_count, argument_values);
    zaf::PrepareOutput();
    CLI::App program("Brings applications of Zanfo 3.x over to XML documents, and back.", "zaf");
    program.set_version_flag("--version", "zaf " + std::string(zaf::kVersion));
    program.require_subcommand(1);
    zaf::CommandAction action;
    zaf::AddConvertCommand(program, action);
    zaf::AddCheckCommand(program, action);
    zaf::AddShowCommand(program, action);
    zaf::AddDiffCommand(program, action);
    zaf::AddCompletionCommand(program, action);
    try {
      program.parse(argument_count, arguments.Get().data());
    } catch (const CLI::ParseError& end) {
      return EndParsing(program, end);
    }
    RefuseEmptyValues(program);
    return action();
  } catch (const zaf::TToolError& error) {
    return Fail(error.status, error.what());
  } catch (const std::exception& error) {
    return Fail(zaf::ExitStatus::kFailed, error.what());
  }
}
