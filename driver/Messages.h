#pragma once

#include <functional>
#include <string_view>

namespace zaf {

/// Receives each message as it occurs, complete with its line end.
using MessageSink = std::function<void(std::string_view)>;

/// All messages of the program, each text once. "ERROR" is a problem with the command line or a
/// directory, "WARNING" one with a file.
namespace messages {

inline constexpr std::string_view kUsage[] = {
    "\n Zaf2Xml converts Zanfo 3.x application files to Zanfo 2000 Xml files.\n\n",
    " Zaf2Xml  [-e | -extension extension] [-f | -filename filename]\n",
    "          [-h | -help] [-i | -input input directory]\n",
    "          [-o | -output filename] [-r | -recurse]\n",
    "          [-s | -suffix extension] [-v | -verify]\n",
    "          output directory\n\n",
    " -e       The extension of the Zanfo application files to convert.\n",
    " -f       The name of the input file to convert.  \n",
    " -h       Displays information on how to use Zaf2Xml.\n",
    " -i       Full path of the input directory where the files are to be found.  \n",
    " -o       Specifies the name of the output filename. \n",
    " -r       Recurses into the subdirectories of the input directory, \n",
    "          converting all files with the specified extension.\n",
    " -s       Specifies the new extension or suffix of the converted files.\n",
    " -v       Verifies the conversion was successful or not.\n",
    " output   Full path of the directory where the files are to be written to.\n",
    " directory\n\n",
    " Please consult the Zanfo 2000 User Guide for more details.\n",
};

// Command line
inline constexpr std::string_view kBadExtension =
    "ERROR: You must specify a valid extension when using the -extension/-e option \n";
inline constexpr std::string_view kBadSuffix =
    "ERROR: You must specify a valid suffix when using the -suffix/-s option.\n";
inline constexpr std::string_view kBadInputName = "ERROR: Invalid input file name!\n";
inline constexpr std::string_view kBadOutputName = "ERROR: Invalid output file name!\n";
inline constexpr std::string_view kBadInput = "ERROR: Invalid input directory!\n";
inline constexpr std::string_view kBadOutput = "ERROR: Invalid output directory!\n";
inline constexpr std::string_view kNoWorkingDirectory = "ERROR: _getcwd error";
inline constexpr std::string_view kBadCommandLine =
    "ERROR: Invalid parameter or bad format in command line!\n";
inline constexpr std::string_view kOutputNameWithoutInputName =
    "ERROR: You cannot use the -o option without a -f option!\n";
inline constexpr std::string_view kSameDirectory =
    "ERROR: The output directory must be different from the input directory!\n";
inline constexpr std::string_view kMismatchedQuotes =
    "ERROR: Mismatched single quotes in one of the parameters.\n";
inline constexpr std::string_view kUnwrappedSpaces =
    "ERROR: You must wrap single quotes ' around parameters with spaces.\n";

// One file
inline constexpr std::string_view kCannotOpenInput =
    "WARNING: Unable to open ZAF. Incorrect filename or file may not exist.\n";
inline constexpr std::string_view kCannotRead = "WARNING: Unable to read ZAF!\n";
inline constexpr std::string_view kOutputExists =
    "WARNING: File already exists and will not be overwritten!\n";
inline constexpr std::string_view kCannotWrite = "WARNING: Unable to create XML document!\n";
inline constexpr std::string_view kCannotReopen = "WARNING: Unable to open ZAF!\n";

// A run. The two spellings of the second and the third are kept deliberately.
inline constexpr std::string_view kNoInputDirectory =
    "ERROR: Unable to locate the input directory\n";
inline constexpr std::string_view kSingleFileFailed =
    "WARNING: Could not covert file successfully!\n";
inline constexpr std::string_view kFileFailed = "WARNING: Could not convert file successfully!\n";
inline constexpr std::string_view kNoInputSubdirectory =
    "WARNING: Unable to locate the input directory\n";
inline constexpr std::string_view kCannotListDirectory =
    "WARNING: The specified directory is invalid!\n";
inline constexpr std::string_view kCannotCreateDirectory = "ERROR: Problem creating directory!\n";
inline constexpr std::string_view kCannotCleanUp = "ERROR: Directory clean up error! \n";

}  // namespace messages
}  // namespace zaf
