#pragma once

#include <cstdint>
#include <optional>

#include "appfile/TErrorPlace.h"
#include "appfile/TZanfoFile.h"
#include "foundation/CText.h"
#include "foundation/Status.h"

namespace zaf {

class TDifferenceObserver;
class TLossObserver;

/// The outcome of the conversion of one file.
enum class FileOutcome : std::uint8_t {
  kConverted,
  kSkipped,           ///< The output exists and was to be kept; the input was not opened.
  kInputNotOpened,    ///< It does not exist, is not readable, empty, or not a regular file.
  kInputNotRead,      ///< It is not a valid application file.
  kOutputExists,      ///< It is already a readable file, which is unchanged.
  kOutputNotCreated,  ///< Something else has its name, or the system refuses it.
  kOutputRefused,     ///< No file of this system can have its name.
  kOutputNotWritten,  ///< The incomplete output was removed.
  kTimeNotKept,       ///< The output is complete, but without the time stamp of the input.
  kOutputNotOpened,   ///< Verification only.
  kOutputNotRead,     ///< Verification only.
};

enum class Verification : std::uint8_t { kOff, kOn };
enum class TargetForm : std::uint8_t { kXml, kLegacy };

/// The destination of the output.
enum class OutputPlace : std::uint8_t { kFile, kStandardOutput, kNowhere };

/// How an existing output file is treated.
enum class ExistingOutput : std::uint8_t {
  kFail,
  kSkip,
  kOverwrite,  ///< Replaced in one step, by a rename, unless it is the input or not a regular file.
  kNewer,      ///< Replaced if the input was changed later, else skipped.
};

/// The conversion of one file.
struct TFileRequest {
  CText input;
  CText output;  ///< For OutputPlace::kFile: its path.
  OutputPlace place = OutputPlace::kFile;
  TargetForm target = TargetForm::kXml;
  ExistingOutput existing = ExistingOutput::kFail;
  Verification verification = Verification::kOff;
  bool is_dry_run = false;            ///< Only checks whether the output exists; reads nothing.
  bool keep_time = false;             ///< Gives the output file the time stamp of the input.
  TLossObserver* observer = nullptr;  ///< The observer of the losses; null: none.
  /// Receives the differences found by verification; null: they are not determined.
  TDifferenceObserver* differences = nullptr;
};

/// The result of one conversion. Members that do not apply keep these defaults.
struct TFileResult {
  FileOutcome outcome = FileOutcome::kConverted;
  Status status = Status::kOk;   ///< Of the operation that failed.
  bool is_replaced = false;      ///< A file at the output's path is replaced or skipped.
  bool is_disk_failure = false;  ///< The output could not be stored, e.g. on a full disk.
  std::optional<DocumentForm> form;
  bool is_class_file = false;
  std::uint32_t bytes_in = 0;
  std::uint32_t bytes_out = 0;
  std::uint32_t actions = 0;
  TErrorPlace error_place{};  ///< Of the input; reason and action of an output that failed.
  bool is_restored = true;    ///< Whether verification found the same application in the output.
};

/// Opens an input and loads it into a new document; false, with outcome and status, on failure.
/// Fills the members of `result` that describe the input.
bool LoadInput(const CText& path, TDataFile& file, TZanfoFile& document, TFileResult& result);

/// Converts one file. Verification reads the output back and compares it with the original. An
/// output file gets its name only when it is complete. Throws std::bad_alloc when memory is
/// insufficient for the document objects themselves.
TFileResult ConvertFile(const TFileRequest& request);

/// Loads the output file to check whether it is readable: kConverted, kOutputNotOpened or
/// kOutputNotRead.
TFileResult ReadBack(const TFileRequest& request);

}  // namespace zaf
