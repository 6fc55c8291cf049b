#include <memory>
#include <string>
#include <string_view>

#include "tool/Commands.h"
#include "tool/RunOptions.h"
#include "tool/TConsole.h"

namespace zaf {
namespace {

/// The options of a command, and its keywords if it takes some, separated by blanks.
std::string WordsOf(const CLI::App& command) {
  std::string words;
  for (const CLI::Option* const option : command.get_options()) {
    for (const std::string& name : option->get_snames()) words += "-" + name + " ";
    for (const std::string& name : option->get_lnames()) words += "--" + name + " ";
  }
  if (command.get_name() == "completion") words += "bash zsh fish ";
  if (!words.empty()) words.pop_back();
  return words;
}

std::string CommandNames(const CLI::App& program) {
  std::string names;
  for (const CLI::App* const command : program.get_subcommands({}))
    names += (names.empty() ? "" : " ") + command->get_name();
  return names;
}

/// For each command a line `COMMAND) choices="OPTIONS" ;;`, in the syntax of bash and zsh.
std::string CasesOf(const CLI::App& program) {
  std::string cases;
  for (const CLI::App* const command : program.get_subcommands({}))
    cases += "    " + command->get_name() + ") choices=\"" + WordsOf(*command) + "\" ;;\n";
  return cases;
}

std::string BashScript(const CLI::App& program) {
  return "_zaf() {\n"
         "  local choices=\"" +
         CommandNames(program) + " " + WordsOf(program) +
         "\"\n"
         "  [ \"$COMP_CWORD\" -eq 1 ] || case ${COMP_WORDS[1]} in\n" +
         CasesOf(program) +
         "  esac\n"
         "  COMPREPLY=($(compgen -W \"$choices\" -- \"${COMP_WORDS[COMP_CWORD]}\"))\n"
         "}\n"
         "complete -o default -F _zaf zaf\n";
}

/// Works both as a file of `fpath`, which zsh uses as the body of the function, and when it is
/// evaluated.
std::string ZshScript(const CLI::App& program) {
  return "#compdef zaf\n"
         "_zaf() {\n"
         "  local choices=\"" +
         CommandNames(program) + " " + WordsOf(program) +
         "\"\n"
         "  [ \"$CURRENT\" -eq 2 ] || case ${words[2]} in\n" +
         CasesOf(program) +
         "  esac\n"
         "  compadd -- ${=choices}\n"
         "  _files\n"
         "}\n"
         "if [ \"${funcstack[1]}\" = _zaf ]; then _zaf; else compdef _zaf zaf; fi\n";
}

std::string FishScript(const CLI::App& program) {
  std::string script = "complete -c zaf -n __fish_use_subcommand -a '" + CommandNames(program) +
                       " " + WordsOf(program) + "'\n";
  for (const CLI::App* const command : program.get_subcommands({}))
    script += "complete -c zaf -n '__fish_seen_subcommand_from " + command->get_name() + "' -a '" +
              WordsOf(*command) + "'\n";
  return script;
}

}  // namespace

void AddCompletionCommand(CLI::App& program, CommandAction& action) {
  CLI::App* const command = program.add_subcommand("completion", "Print a completion script");
  const auto shell = std::make_shared<std::string>();
  command->add_option("SHELL", *shell, "bash, zsh or fish")
      ->required()
      ->check(CLI::IsMember({"bash", "zsh", "fish"}));
  command->callback([&program, &action, shell] {
    action = [&program, shell] {
      PrintData(*shell == "bash"  ? BashScript(program)
                : *shell == "zsh" ? ZshScript(program)
                                  : FishScript(program));
      return static_cast<int>(ExitStatus::kDone);
    };
  });
}

}  // namespace zaf
