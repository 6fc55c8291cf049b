#pragma once

#include <cstdint>

namespace zaf {

/// Result of an operation of the model: 0 is success, every other value is a failure. Values
/// without a name can occur and are passed through unchanged.
enum class [[nodiscard]] Status : std::uint16_t{
    kOk = 0,
    kMalformed = 0xFE02,          ///< The content is inconsistent or refers to something missing.
    kRunOnlyNotAllowed = 0xFFCE,  ///< A run-only file that the caller does not allow.
    kNoFile = 0xFFFA,             ///< An operation was given no file.
    kUnsupportedFormat = 0xFFFB,  ///< The version in the format word is unknown.
    kFailure = 0xFFFF,            ///< Reading, writing or opening failed.
};

}  // namespace zaf
