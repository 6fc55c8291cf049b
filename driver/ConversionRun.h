#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "driver/ConversionOptions.h"
#include "driver/Messages.h"

namespace zaf {

/// Converts what the options ask for. The working directory is the output directory, as
/// ParseCommandLine leaves it, and changes with the run. What goes wrong with a file or directory
/// is reported; the run goes on.
void RunConversion(const ConversionOptions& options, const MessageSink& report);

/// Converts the files of the input directory that have the extension and, with `recurse`, those of
/// the directories beneath it, mirrored under the output directory: never those of the output
/// directory itself. True when at least one file was attempted.
bool ConvertDirectory(const ConversionOptions& options, const MessageSink& report);

/// Converts the one file that the options name.
void ConvertSingleFile(const ConversionOptions& options, const MessageSink& report);

/// Converts one file; with `verify` reads what was written and compares it with the original (the
/// outcome of the comparison does not count). An existing output stays untouched. False, with a
/// message, when the file could not be converted. When the output cannot be created that is silent
/// and true. Throws std::bad_alloc when not even the document objects can be had.
bool ConvertFile(const CText& input_path, bool verify, const CText& output_path,
                 const MessageSink& report);

/// The output name of a file that was found in a directory: the dotted extension, with which the
/// name has to end (ignoring case), becomes the dotted suffix. None when it ends otherwise.
std::optional<std::string> OutputNameInDirectory(std::string_view name,
                                                 std::string_view dotted_extension,
                                                 std::string_view dotted_suffix);

/// The output name of a single file that gets none: the last occurrence of the dotted extension is
/// removed, wherever it is, and the dotted suffix appended.
std::string OutputNameOfSingleFile(std::string_view name, std::string_view dotted_extension,
                                   std::string_view dotted_suffix);

}  // namespace zaf
