#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "driver/FileConversion.h"
#include "fields/TLossObserver.h"
#include "tool/Inputs.h"

namespace zaf {

/// The result for an input. kPlanned: none, in a dry run.
enum class InputStatus : std::uint8_t { kConverted, kChecked, kSkipped, kPlanned, kFailed };

/// Why an input failed.
struct TInputError {
  std::string code;  ///< A status such as "0xFE02", or a keyword.
  std::string text;  ///< A sentence without its full stop, in UTF-8 or the bytes of a path.
};

/// The data that is reported of one input.
struct TInputRecord {
  TInput input;
  std::string output;  ///< Empty: none.
  InputStatus status = InputStatus::kConverted;
  TFileResult result;
  double seconds = 0;
  std::optional<TInputError> error;
  std::vector<TLoss> losses;

  /// Whether there are losses other than notes.
  [[nodiscard]] bool HasLosses() const;
};

/// The sums over all inputs.
struct TTotals {
  std::uint64_t inputs = 0;
  std::uint64_t converted = 0;
  std::uint64_t checked = 0;
  std::uint64_t skipped = 0;
  std::uint64_t failed = 0;
  std::uint64_t with_losses = 0;
  std::uint64_t bytes_in = 0;
  std::uint64_t bytes_out = 0;
  double seconds = 0;

  void Add(const TInputRecord& record);
};

/// The lines of a report, JSON in UTF-8 with their line ends, described by
/// share/zaf-report.schema.json. Bytes that are not UTF-8 become U+FFFD.
std::string ReportLine(const TInputRecord& record);
std::string ReportLine(const TTotals& totals);

/// An input that failed, from a report.
struct TFailedInput {
  std::string path;
  std::string base;
};

/// Reads the failed inputs of a report; `-` is standard input. Throws TToolError (kUsage) when it
/// cannot be read or is not a report.
std::vector<TFailedInput> ReadFailedInputs(const std::string& report);

/// The keyword of a loss's code, and whether it is a loss rather than a note.
std::string_view LossWord(LossCode code);
inline bool IsLoss(LossCode code) { return code != LossCode::kLineEndChanged; }

/// The keyword of a file's form.
std::string_view FormWord(DocumentForm form);

/// Formats at most 63 characters like printf.
[[gnu::format(printf, 1, 2)]] std::string Format(const char* format, ...);

/// Converts a text of an application from ISO-8859-1 to UTF-8.
std::string ToUtf8(std::string_view latin1);

}  // namespace zaf
