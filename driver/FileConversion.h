#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "appfile/TErrorPlace.h"
#include "appfile/TZanfoFile.h"
#include "foundation/CText.h"
#include "foundation/Status.h"

namespace zaf {

class TDifferenceObserver;
class TLossObserver;

/// What the file at a path describes: a class file if its name ends in ".zcf", case ignored.
DocumentKind KindOfName(std::string_view path);

/// How the conversion of one file ended.
enum class FileOutcome : std::uint8_t {
  kConverted,
  kSkipped,           ///< The output exists and was to stay; the input was not opened.
  kInputNotOpened,    ///< It does not exist, is not readable, empty, or not a regular file.
  kInputNotRead,      ///< It is not a sound application file.
  kOutputExists,      ///< It is a readable file already, and unchanged.
  kOutputNotCreated,  ///< Its name is taken by something else, or refused by the system.
  kOutputRefused,     ///< No file of this system can have its name.
  kOutputNotWritten,  ///< Nothing of it is left.
  kTimeNotKept,       ///< The output is complete, but without the time stamp of the input.
  kOutputNotOpened,   ///< Verification only.
  kOutputNotRead,     ///< Verification only.
};

enum class Verification : std::uint8_t { kOff, kOn };
enum class TargetForm : std::uint8_t { kXml, kLegacy };

/// Where the output goes.
enum class OutputPlace : std::uint8_t { kFile, kStandardOutput, kNowhere };

/// What happens when the output file exists.
enum class ExistingOutput : std::uint8_t {
  kFail,
  kSkip,
  kOverwrite,  ///< Replaced in one step, by a rename, unless it is the input or no regular file.
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
  bool is_dry_run = false;            ///< Only looks whether the output exists; reads nothing.
  bool keep_time = false;             ///< Gives the output file the time stamp of the input.
  TLossObserver* observer = nullptr;  ///< Of the losses; null: they are not recorded.
  /// Of the differences that verification finds; null: they are not looked for.
  TDifferenceObserver* differences = nullptr;
};

/// The result of one conversion. Members that it did not reach keep these defaults.
struct TFileResult {
  FileOutcome outcome = FileOutcome::kConverted;
  Status status = Status::kOk;   ///< Of the operation that failed.
  bool is_disk_failure = false;  ///< The output could not be stored, e.g. on a full disk.
  std::optional<DocumentForm> form;
  bool is_class_file = false;
  std::uint32_t bytes_in = 0;
  std::uint32_t bytes_out = 0;
  std::uint32_t actions = 0;
  TErrorPlace error_place{};  ///< Of the input, or of the output that could not be read back.
  bool is_restored = true;    ///< Verification found the same application in the output.
};

/// Converts one file. Verification reads the output back and compares it with the original. An
/// output file has its name only when it is complete. Throws std::bad_alloc when there is no memory
/// for the document objects themselves.
TFileResult ConvertFile(const TFileRequest& request);

/// Loads a file to find out whether it can be read: kConverted, kOutputNotOpened or kOutputNotRead.
TFileResult ReadBack(const CText& path);

}  // namespace zaf
