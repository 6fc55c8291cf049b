#include "tool/FileRun.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <string>

#include "foundation/CText.h"
#include "foundation/FileSystem.h"
#include "foundation/FourCharCode.h"
#include "foundation/Paths.h"
#include "foundation/StandardPaths.h"
#include "tool/Inputs.h"
#include "tool/Interrupt.h"
#include "tool/Messages.h"
#include "tool/Report.h"
#include "tool/TConsole.h"
#include "tool/TOrderedWork.h"
#include "tool/Terminal.h"

namespace zaf {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::string_view kStandardStream = "-";
constexpr int kSignalBase = 128;

/// The directory part of a path; empty for a mere name.
std::string DirectoryOf(const std::string& path) { return ToText(ToPath(path).parent_path()); }

double SecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

class TLossList final : public TLossObserver {
 public:
  explicit TLossList(std::vector<TLoss>& losses) : losses_(losses) {}
  void OnLoss(TLoss&& loss) override { losses_.push_back(std::move(loss)); }

 private:
  std::vector<TLoss>& losses_;
};

/// Records the differences that a verification finds as losses, unless another loss of the action,
/// or of the application itself, or a note on their section explains them.
class TDifferenceLosses final : public TDifferenceObserver {
 public:
  /// `others`: the losses of the conversion, which is complete when the first difference is found.
  explicit TDifferenceLosses(const std::vector<TLoss>& others) : others_(others) {}

  bool LooksInto(std::string_view action) override {
    if (!explained_) {
      explained_.emplace();
      for (const TLoss& loss : others_) {
        const bool is_of_section = !IsLoss(loss.code) && loss.section != kNoCode;
        explained_->emplace(loss.action, is_of_section ? "'" + TextOf(loss.section) + "'" : "");
      }
    }
    return !explained_->contains(TField(action, ""));
  }
  void OnDifference(const TDifference& difference) override {
    const std::string action(difference.is_of_action ? difference.subject : "");
    if (!LooksInto(action) || explained_->contains(TField(action, difference.field))) return;
    losses.push_back({LossCode::kNotRestored, "What is read back from the output differs: %",
                      DifferenceText(difference), action});
    if (difference.field.starts_with('\''))
      losses.back().section = CodeOfText(difference.field.substr(1));
  }

  std::vector<TLoss> losses;

 private:
  /// An action and a field of it, as in TDifference; without a field: all of the action.
  using TField = std::pair<std::string_view, std::string>;

  const std::vector<TLoss>& others_;
  std::optional<std::set<TField>> explained_;
};

/// The report while it is written. Does nothing if none was requested.
class TReportFile {
 public:
  /// Never replaces a file that is not a report.
  explicit TReportFile(const std::string& path) : path_(path) {
    if (path.empty()) return;
    if (path == kStandardStream) {
      file_ = stdout;
      return;
    }
    if (LookAt(path).kind == PathKind::kFile && !IsReport(path))
      throw TToolError(ExitStatus::kUsage, path + " exists and is no report; it is left as it is");
    static_cast<void>(MakeDirectories(DirectoryOf(path)));
    file_ = OpenStream(CText(path), "wb");
    if (file_ == nullptr) throw TToolError(ExitStatus::kCannotWrite, Failure());
    // A crash does not lose lines, and each is written by one call of the system.
    std::setvbuf(file_, nullptr, _IONBF, 0);
  }
  TReportFile(const TReportFile&) = delete;
  TReportFile& operator=(const TReportFile&) = delete;
  ~TReportFile() {
    if (file_ != nullptr && file_ != stdout) std::fclose(file_);
  }

  [[nodiscard]] bool IsOpen() const { return file_ != nullptr; }
  [[nodiscard]] std::string Failure() const { return "The report " + path_ + " cannot be written"; }

  [[nodiscard]] bool Write(const std::string& line) {
    if (file_ == nullptr) return true;
    return std::fwrite(line.data(), 1, line.size(), file_) == line.size() &&
           std::fflush(file_) == 0;
  }

 private:
  static bool IsReport(const std::string& path) {
    std::ifstream file(StreamPath(path), std::ios::binary);
    std::string begin(10, '\0');
    file.read(begin.data(), static_cast<std::streamsize>(begin.size()));
    return file.gcount() == 0 || begin.starts_with("{\"input\":") || begin == "{\"summary\"";
  }

  const std::string& path_;
  std::FILE* file_ = nullptr;
};

/// One input and its state.
struct TTask {
  TInputRecord record;
  std::string output;  ///< The path of the output, which other tasks compare with theirs.
  bool has_output_directory = true;
  std::string messages;
  std::string report;
};

class TFileRun {
 public:
  TFileRun(const TRunOptions& options, const std::vector<TInputRoot>& roots)
      : options_(options),
        is_single_(IsSingleOutput(options, roots)),
        report_(options.report),
        console_(options),
        roots_(roots),
        walk_(roots, options) {}

  int Run() {
    if (console_.ShowsProgress()) CountInputs();
    NoteInterrupts();
    TOrderedWork<TTask, TFileRun>(options_.jobs, *this).Run();
    return Finish();
  }

  // The steps of TOrderedWork.

  /// Finds the next input and makes the directory of its output.
  bool Next(TTask& task) {
    task = {};
    TInputRecord& record = task.record;
    if (stop_reason_ || GetInterrupt() != 0 || !walk_.Next(record.input)) return false;
    if (options_.command == FileCommand::kCheck) return true;
    record.output = options_.output;
    if (!is_single_) {
      std::string below = OutputName(record.input.below, options_);
      if constexpr (kPathSeparator != '/') std::ranges::replace(below, '/', kPathSeparator);
      record.output = JoinPaths(options_.output, below);
    }
    task.output = record.output;
    if (record.output != kStandardStream && !options_.dry_run &&
        record.input.kind == InputKind::kFile)
      task.has_output_directory = MakeDirectoryOf(record.output);
    return true;
  }

  static bool Depends(const TTask& task, const TTask& earlier) {
    return !task.output.empty() && task.output == earlier.output;
  }

  void Work(TTask& task) {
    TInputRecord& record = task.record;
    const Clock::time_point begin = Clock::now();
    const std::optional<Fault> fault = FindFault(task);
    if (!fault) {
      try {
        Convert(record);
      } catch (const std::bad_alloc&) {
        record.error = ErrorOf(Fault::kMemory, record);
      }
    } else {
      record.error = ErrorOf(*fault, record);
    }
    record.status = StatusOf(record);
    record.seconds = SecondsSince(begin);
    task.messages = MessagesOf(record);
    if (record.status == InputStatus::kFailed || record.status == InputStatus::kChecked)
      if (!HasOutput(record)) record.output.clear();
    if (report_.IsOpen()) task.report = ReportLine(record);
  }

  void Emit(TTask& task) {
    const TInputRecord& record = task.record;
    totals_.Add(record);
    if (record.result.is_disk_failure) Stop("The output cannot be stored");
    if (record.status == InputStatus::kPlanned) PrintPlan(record);
    if (!report_.Write(task.report)) Stop(report_.Failure());
    console_.Print(task.messages);
    console_.ShowProgress(totals_, expected_);
  }

 private:
  /// Whether OUTPUT is the only output and not a directory.
  static bool IsSingleOutput(const TRunOptions& options, const std::vector<TInputRoot>& roots) {
    if (options.command == FileCommand::kCheck) return false;
    const bool is_file = roots.size() == 1 && roots.front().path == roots.front().base &&
                         !IsDirectory(roots.front().path);
    if (options.output == kStandardStream) {
      if (is_file) return true;
      throw TToolError(ExitStatus::kUsage, "Only one file can be written to standard output");
    }
    for (const TInputRoot& root : roots)
      if (roots.size() == 1 && AreSame(root.path, options.output))
        throw TToolError(ExitStatus::kUsage, "The output is the input");
    const char last = options.output.back();
    return is_file && last != '/' && last != kPathSeparator && !IsDirectory(options.output);
  }

  void CountInputs() {
    TInputWalk walk(roots_, options_);
    for (TInput input; walk.Next(input);) ++expected_;
  }

  bool MakeDirectoryOf(const std::string& output) {
    const std::string directory = DirectoryOf(output);
    if (directory.empty() || directory == last_directory_) return true;
    if (MakeDirectories(directory)) {
      last_directory_ = directory;
      return true;
    }
    if (is_single_ || !IsDirectory(options_.output))
      Stop("The directory " + directory + " cannot be made");
    return false;
  }

  void Stop(const std::string& reason) {
    if (!stop_reason_) stop_reason_ = reason;
  }

  [[nodiscard]] std::optional<Fault> FindFault(const TTask& task) const {
    const TInput& input = task.record.input;
    if (input.kind == InputKind::kMissing) return Fault::kMissing;
    if (input.kind == InputKind::kUnreadableDirectory) return Fault::kDirectory;
    if (!task.has_output_directory) return Fault::kOutputDirectory;
    if (!input.rival.empty() && options_.command == FileCommand::kConvert && !is_single_)
      return Fault::kRival;
    return std::nullopt;
  }

  void Convert(TInputRecord& record) const {
    TLossList losses(record.losses);
    TFileRequest request;
    request.input = std::string_view(record.input.path);
    request.output = std::string_view(record.output);
    if (request.input.GetCharacterCount() != record.input.path.size() ||
        request.output.GetCharacterCount() != record.output.size())
      throw std::bad_alloc();
    request.place = options_.command == FileCommand::kCheck ? OutputPlace::kNowhere
                    : record.output == kStandardStream      ? OutputPlace::kStandardOutput
                                                            : OutputPlace::kFile;
    request.target = options_.target;
    request.existing = options_.existing;
    const bool verifies = options_.verify || options_.command == FileCommand::kCheck;
    request.verification = verifies ? Verification::kOn : Verification::kOff;
    request.is_dry_run = options_.dry_run;
    request.keep_time = options_.keep_time;
    TDifferenceLosses differences(record.losses);
    if (options_.LooksForLosses()) {
      request.observer = &losses;
      request.differences = &differences;
    }
    record.result = ConvertFile(request);
    const FileOutcome outcome = record.result.outcome;
    if (outcome != FileOutcome::kConverted && outcome != FileOutcome::kSkipped)
      record.error = ErrorOfOutcome(record);
    std::ranges::move(differences.losses, std::back_inserter(record.losses));
    AddLossesOfVerification(record);
  }

  static void AddLossesOfVerification(TInputRecord& record) {
    if (record.result.outcome == FileOutcome::kOutputNotRead) {
      const std::string action(record.result.error_place.action);
      record.losses.push_back({LossCode::kNotReadable, "%", record.error->text, action});
    } else if (!record.result.is_restored && record.losses.empty()) {
      record.losses.push_back(
          {LossCode::kNotRestored, "What was written is read back as another application", {}, {}});
    }
  }

  [[nodiscard]] InputStatus StatusOf(const TInputRecord& record) const {
    if (record.error || (options_.fail_on_loss && record.HasLosses())) return InputStatus::kFailed;
    if (record.result.outcome == FileOutcome::kSkipped) return InputStatus::kSkipped;
    if (options_.dry_run) return InputStatus::kPlanned;
    return options_.command == FileCommand::kCheck ? InputStatus::kChecked
                                                   : InputStatus::kConverted;
  }

  /// Whether an output of this input exists.
  [[nodiscard]] static bool HasOutput(const TInputRecord& record) {
    const FileOutcome outcome = record.result.outcome;
    return !record.error || outcome == FileOutcome::kOutputNotRead ||
           outcome == FileOutcome::kOutputNotOpened || outcome == FileOutcome::kTimeNotKept;
  }

  [[nodiscard]] std::string MessagesOf(const TInputRecord& record) const {
    std::string messages;
    if (record.error) messages += ErrorMessage(record, console_.GetColoring());
    if (options_.volume == Volume::kQuiet) return messages;
    const bool is_verbose = options_.volume == Volume::kVerbose;
    if (is_verbose) messages += InputMessage(record);
    if (is_verbose || options_.fail_on_loss || options_.command == FileCommand::kCheck)
      for (const TLoss& loss : record.losses)
        messages += LossMessage(record, loss, console_.GetColoring());
    return messages;
  }

  void PrintPlan(const TInputRecord& record) {
    try {
      PrintData(Printable(record.input.path) + " -> " + Printable(record.output) + "\n");
    } catch (const TToolError& error) {
      Stop(error.what());
    }
  }

  int Finish() {
    totals_.seconds = SecondsSince(begin_);
    if (report_.IsOpen() && !report_.Write(ReportLine(totals_))) Stop(report_.Failure());
    if (options_.volume != Volume::kQuiet)
      console_.Print(Summary(totals_, options_.command, options_.LooksForLosses()));
    if (stop_reason_) throw TToolError(ExitStatus::kCannotWrite, *stop_reason_ + "; stopped");
    if (const int interrupt = GetInterrupt(); interrupt != 0) return kSignalBase + interrupt;
    if (totals_.inputs == 0) throw TToolError(ExitStatus::kNothing, "No input matches");
    return static_cast<int>(totals_.failed > 0 ? ExitStatus::kFailed : ExitStatus::kDone);
  }

  const TRunOptions& options_;
  const bool is_single_;
  TReportFile report_;
  TConsole console_;
  const std::vector<TInputRoot>& roots_;
  TInputWalk walk_;
  std::string last_directory_;  ///< The directory of the last output, which exists.
  std::uint64_t expected_ = 0;  ///< The number of inputs, if progress is shown.
  TTotals totals_;
  std::optional<std::string> stop_reason_;  ///< Set when nothing more can be written.
  Clock::time_point begin_ = Clock::now();
};

}  // namespace

int RunFiles(const TRunOptions& options) {
  const std::vector<TInputRoot> roots = GatherRoots(options);
  return TFileRun(options, roots).Run();
}

}  // namespace zaf
