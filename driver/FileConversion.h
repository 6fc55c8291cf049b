#pragma once

#include <cstdint>

#include "foundation/CText.h"
#include "foundation/Status.h"

namespace zaf {

/// How the conversion of one file ended.
enum class FileOutcome : std::uint8_t {
  kConverted,
  kInputNotOpened,    ///< It does not exist, is not readable, empty, or not a regular file.
  kInputNotRead,      ///< It is not a sound application file.
  kOutputExists,      ///< It is a readable file already, and unchanged.
  kOutputNotCreated,  ///< Its name is taken by something else, or refused by the system.
  kOutputNotWritten,  ///< Nothing of it is left.
  kOutputNotOpened,   ///< Verification only.
  kOutputNotRead,     ///< Verification only.
};

/// What became of one file.
struct TFileResult {
  FileOutcome outcome = FileOutcome::kConverted;
  Status status = Status::kOk;  ///< Of the operation that failed.
};

enum class Verification : std::uint8_t { kOff, kOn };

/// Converts one file to an XML document. The verification reads what was written and compares it
/// with the original; the result of the comparison does not count. With verification an output that
/// could not be created is kOutputNotOpened. An existing output is never changed. Throws
/// std::bad_alloc when there is no memory for the document objects themselves.
TFileResult ConvertFile(const CText& input_path, const CText& output_path,
                        Verification verification);

}  // namespace zaf
