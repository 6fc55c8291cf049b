#pragma once

#include "tool/RunOptions.h"

namespace zaf {

/// Converts or checks the inputs of the options. Returns the exit status: an ExitStatus, or 128
/// plus the number of a signal that stopped the run. Throws TToolError when nothing was done and,
/// after the report and summary, when nothing more can be written.
int RunFiles(const TRunOptions& options);

}  // namespace zaf
