#include <cstdint>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/Paths.h"
#include "foundation/StandardPaths.h"
#include "tool/Commands.h"
#include "tool/Messages.h"
#include "tool/RunOptions.h"
#include "tool/Show.h"
#include "tool/TConsole.h"

namespace zaf {
namespace {

struct TShowOptions {
  std::string file;
  bool sections = false;
  bool bytes = false;
  bool json = false;
  std::string html;  ///< Path of the page. Empty: none.
};

/// Writes the page to the file `path`; replaces an older page in one step, but no other file.
void WritePage(const std::string& path, std::string page) {
  if (IsThere(path)) {
    std::ifstream file(StreamPath(path), std::ios::binary);
    std::string begin(kPageBegin.size(), '\0');
    file.read(begin.data(), static_cast<std::streamsize>(begin.size()));
    if (begin != kPageBegin)
      throw TToolError(ExitStatus::kUsage,
                       path + " exists and is no page of this program; it is left as it is");
  }
  TDataFile file;
  if (page.size() > UINT32_MAX || file.OpenNew(CText(path)) != Status::kOk ||
      file.Write(static_cast<std::uint32_t>(page.size()), page.data()) != Status::kOk ||
      file.Publish(TakenName::kReplaced) != Status::kOk)
    throw TToolError(ExitStatus::kCannotWrite, "The page " + path + " cannot be written");
}

int Show(const TShowOptions& options) {
  const TShownFile file = LoadShownFile(options.file);
  if (file.record.error) {
    std::fputs(ErrorMessage(file.record, Coloring::kOff).c_str(), stderr);
    return static_cast<int>(ExitStatus::kFailed);
  }
  const bool is_legacy = *file.record.result.form == DocumentForm::kLegacy;
  if ((options.sections || options.bytes) && !is_legacy)
    throw TToolError(ExitStatus::kFailed, options.file +
                                              " is no legacy file: only those have "
                                              "sections and an account of their bytes");
  const bool is_page = !options.html.empty();
  std::string view = is_page            ? HtmlView(file)
                     : options.json     ? JsonView(file)
                     : options.sections ? SectionsView(file)
                     : options.bytes    ? BytesView(file)
                                        : TreeView(file);
  if (is_page && options.html != "-")
    WritePage(options.html, std::move(view));
  else
    PrintData(view);
  return static_cast<int>(ExitStatus::kDone);
}

}  // namespace

void AddShowCommand(CLI::App& program, CommandAction& action) {
  CLI::App* const command =
      program.add_subcommand("show", "Show what is in a file: tree, sections, bytes");
  const auto options = std::make_shared<TShowOptions>();
  command->add_option("FILE", options->file, "The file, of any form")->required();
  command->add_flag("--sections", options->sections,
                    "List the headers, maps and sections of a legacy file");
  command->add_flag("--bytes", options->bytes,
                    "List what becomes of each byte of a legacy file when it is converted");
  auto* const json = command->add_flag("--json", options->json, "Print all of it as JSON");
  command->add_option("--html", options->html, "Write all of it as a page; - is standard output")
      ->type_name("OUT")
      ->excludes(json);
  command->callback([options, &action] {
    if (options->sections + options->bytes + options->json + !options->html.empty() > 1)
      throw TToolError(ExitStatus::kUsage, "One view at a time");
    action = [options] { return Show(*options); };
  });
}

}  // namespace zaf
