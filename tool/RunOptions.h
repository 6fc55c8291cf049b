#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "driver/FileConversion.h"
#include "tool/PathFilter.h"

namespace zaf {

/// The exit statuses of the program.
enum class ExitStatus : std::uint8_t {
  kDone = 0,
  kFailed = 1,      ///< An input failed; the others were processed.
  kUsage = 2,       ///< The command line is wrong; nothing was done.
  kNothing = 3,     ///< No input matched.
  kCannotWrite = 4  ///< The output or the report cannot be written at all; the run stopped.
};

/// An error that ends the program with `status`. `what` is a sentence without full stop.
class TToolError : public std::runtime_error {
 public:
  TToolError(ExitStatus exit_status, const std::string& what)
      : std::runtime_error(what), status(exit_status) {}
  ExitStatus status;
};

/// The value of an option with three keywords.
enum class When : std::uint8_t { kAuto, kAlways, kNever };
enum class Volume : std::uint8_t { kQuiet, kNormal, kVerbose };
enum class FileCommand : std::uint8_t { kConvert, kCheck };

/// The options of `convert` and `check`. Paths are as given.
struct TRunOptions {
  FileCommand command = FileCommand::kConvert;

  std::vector<std::string> inputs;
  std::string files_from;  ///< A list of further inputs; `-` is standard input. Empty: none.
  bool is_null_separated = false;
  std::string retry;  ///< A report whose failed inputs are further inputs. Empty: none.
  bool recurse = true;
  std::vector<std::string> extensions{"zaf", "zcf"};  ///< Without full stops.
  TPathFilter filter;
  TShard shard;

  std::string output;  ///< A file or directory; `-` is standard output.
  TargetForm target = TargetForm::kXml;
  std::string suffix;  ///< Of the outputs, without its full stop.
  ExistingOutput existing = ExistingOutput::kFail;
  bool verify = false;
  bool keep_time = false;
  bool dry_run = false;

  bool fail_on_loss = false;
  std::string report;  ///< `-` is standard output. Empty: none.
  Volume volume = Volume::kNormal;
  When color = When::kAuto;
  When progress = When::kAuto;
  unsigned jobs = 1;

  [[nodiscard]] bool LooksForLosses() const {
    return command == FileCommand::kCheck || verify || fail_on_loss || !report.empty() ||
           volume == Volume::kVerbose;
  }
};

}  // namespace zaf
