#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>

#include "foundation/FileSystem.h"
#include "tool/Commands.h"
#include "tool/RunOptions.h"
#include "tool/Terminal.h"
#include "tool/Version.h"

namespace {

int Fail(zaf::ExitStatus status, const char* what) {
  std::fprintf(stderr, "zaf: error: %s\n", what);
  return static_cast<int>(status);
}

/// The parser's own errors; or help or the version, which are no errors.
int EndParsing(const CLI::App& program, const CLI::ParseError& end) {
  if (end.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
    program.exit(end);
    return static_cast<int>(std::fflush(stdout) == 0 ? zaf::ExitStatus::kDone
                                                     : zaf::ExitStatus::kCannotWrite);
  }
  return Fail(zaf::ExitStatus::kUsage, end.what());
}

}  // namespace

#ifdef _WIN32
#define main wmain
#endif

int main(int argument_count, zaf::TArgumentCharacter** argument_values) {
  try {
    zaf::PrepareProcess();
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
    return action();
  } catch (const zaf::TToolError& error) {
    return Fail(error.status, error.what());
  } catch (const std::exception& error) {
    return Fail(zaf::ExitStatus::kFailed, error.what());
  }
}
