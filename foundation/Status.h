#pragma once

#include <cstdint>

namespace zaf {

/// Outcome of an operation of the model: 0 is success, every other value says what went wrong.
/// Values without a name can occur (a caller passes on what it got) and pass through unchanged.
enum class [[nodiscard]] Status : std::uint16_t{
    kOk = 0,
    kMalformed = 0xFE02,          ///< The content contradicts itself or names what is not there.
    kRunOnlyNotAllowed = 0xFFCE,  ///< A run-only file where the caller allows none.
    kNoFile = 0xFFFA,             ///< An operation was given no file.
    kUnsupportedFormat = 0xFFFB,  ///< The format word names no version that is known.
    kFailure = 0xFFFF,            ///< Reading, writing or opening failed.
};

}  // namespace zaf
