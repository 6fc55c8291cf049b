#pragma once

#include "driver/ConversionOptions.h"
#include "driver/Messages.h"

namespace zaf {

/// Runs the conversion of the options. The working directory is the output directory, as
/// ParseCommandLine leaves it, and changes with the run. What goes wrong with a file or directory
/// is reported; the run goes on.
void RunConversion(const ConversionOptions& options, const MessageSink& report);

/// Converts the files of the input directory that have the extension and, with `recurse`, those of
/// the directories beneath it, mirrored under the output directory: never those of the output
/// directory itself. True when at least one file was attempted.
bool ConvertDirectory(const ConversionOptions& options, const MessageSink& report);

/// Converts the one file that the options name.
void ConvertSingleFile(const ConversionOptions& options, const MessageSink& report);

}  // namespace zaf
