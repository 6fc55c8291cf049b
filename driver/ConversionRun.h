#pragma once

#include "driver/ConversionOptions.h"
#include "driver/Messages.h"

namespace zaf {

/// Runs a conversion with these options. The working directory is the output directory, as set by
/// ParseCommandLine, and changes during the run. Failures of files and directories are reported;
/// the run continues.
void RunConversion(const ConversionOptions& options, const MessageSink& report);

/// Converts the files of the input directory that have the extension and, with `recurse`, those of
/// the directories below it, mirrored under the output directory; skips the output directory
/// itself. True when at least one file was attempted.
bool ConvertDirectory(const ConversionOptions& options, const MessageSink& report);

/// Converts the one file given by the options.
void ConvertSingleFile(const ConversionOptions& options, const MessageSink& report);

}  // namespace zaf
