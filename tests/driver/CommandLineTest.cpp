#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "driver/CommandLine.h"
#include "tests/foundation/TTestDirectory.h"
#include "tests/support/Convert.h"

namespace zaf {
namespace {

using test::TTestDirectory;

const std::string kUsage = test::ReadFile(ZAF2XML_USAGE);
constexpr const char* kBadExtension =
    "ERROR: You must specify a valid extension when using the -extension/-e option \n";
constexpr const char* kBadSuffix =
    "ERROR: You must specify a valid suffix when using the -suffix/-s option.\n";
constexpr const char* kBadInput = "ERROR: Invalid input directory!\n";
constexpr const char* kBadOutput = "ERROR: Invalid output directory!\n";
constexpr const char* kBadFormat = "ERROR: Invalid parameter or bad format in command line!\n";

/// The options in one line: 1 for each flag that is set, then the texts.
std::string Describe(const ConversionOptions& options) {
  std::string line;
  for (const bool is_set : {options.verify, options.recurse, options.debug,
                            options.output_name_given, options.input_name_given})
    line += is_set ? '1' : '0';
  for (const CText* text :
       {&options.input_name, &options.output_name, &options.output_directory,
        &options.dotted_extension, &options.search_pattern, &options.dotted_suffix})
    line.append("[").append(text->View()).append("]");
  return line;
}

struct TCommandLineCase {
  std::string name;
  std::vector<const char*> arguments;  ///< After the program's name.
  std::string expected;                ///< The messages; if none, the options and the directory.
};

/// Runs in a directory that contains "in", "in/out", "out" and "my out".
class CommandLine : public testing::TestWithParam<TCommandLineCase> {
 protected:
  CommandLine() {
    for (const char* name : {"in/out", "out", "my out"}) directory_.Make(name);
    std::filesystem::current_path(directory_.Path());
  }

  std::string Parse(std::vector<const char*> arguments) {
    std::string messages;
    arguments.insert(arguments.begin(), "Zaf2Xml");
    const auto options =
        ParseCommandLine(arguments, [&](std::string_view text) { messages += text; });
    if (!options) return messages;
    input_directory_ = options->input_directory.View();
    return messages + Describe(*options) + " in " +
           std::filesystem::current_path().lexically_relative(directory_.Path()).generic_string();
  }

  TTestDirectory directory_;
  std::string input_directory_;
};

TEST_P(CommandLine, IsUnderstood) { EXPECT_EQ(Parse(GetParam().arguments), GetParam().expected); }

const std::string kMismatched = "ERROR: Mismatched single quotes in one of the parameters.\n";
const std::string kMustWrap =
    "ERROR: You must wrap single quotes ' around parameters with spaces.\n";
const TCommandLineCase kCommandLines[] = {
    {"NoArguments", {}, kUsage},
    {"HelpAlone", {"-h"}, kUsage},
    {"HelpAmongOptions", {"-v", "-HELP", "-x", "out"}, kUsage},
    {"UpperCaseHelpInLastPlace", {"-H"}, kBadOutput},
    {"UnknownOption", {"-x", "out"}, kBadOutput},
    {"AccentedOption", {"-\xC9", "zaf", "out"}, kBadOutput},
    {"ExtensionLikeAnOption", {"-e", "-x", "out"}, kBadExtension},
    {"ExtensionLast", {"-e", "zaf"}, kBadExtension},
    {"SuffixLast", {"-SUFFIX", "xml"}, kBadSuffix},
    {"NameNotClosed", {"-f", "'my", "out"}, kMustWrap + "ERROR: Invalid input file name!\n"},
    {"NameQuotedLast", {"-f", "'my"}, kMismatched + "ERROR: Invalid input file name!\n"},
    {"OutputNameNotClosed",
     {"-o", "'a", "b", "out"},
     kMustWrap + "ERROR: Invalid output file name!\n"},
    {"InputNotClosed", {"-i", "'in", "out"}, kMustWrap + kBadInput},
    {"InputMissing", {"-i", "missing", "out"}, kBadInput},
    {"InputEmpty", {"-i", "", "out"}, kBadInput},
    {"NoOutputBehindInput", {"-i", "in"}, kBadFormat},
    {"OutputMissing", {"-o", "x", "missing"}, kBadOutput},
    {"OutputCountsFromInput", {"-i", "in", "my out"}, kBadOutput},
    {"OutputQuotedLast", {"'my"}, kMismatched + kBadOutput},
    {"OutputNameAlone",
     {"-o", "x.xml", "out"},
     "ERROR: You cannot use the -o option without a -f option!\n"},
    {"SameDirectory",
     {"-i", "/", "/"},
     "ERROR: The output directory must be different from the input directory!\n"},
    {"Defaults", {"out"}, "00000[][][out][.zaf][*.zaf][.xzf] in out"},
    {"AllOptions",
     {"-V", "-Debug", "-Extension", "ZaF", "-S", "xml", "-F", "a.zaf", "-RECURSE", "-o", "B.xml",
      "-I", "in", "out", "ignored"},
     "11111[a.zaf][B.xml][out][.ZaF][*.ZaF][.xml] in in/out"},
    {"QuotedInOneArgument",
     {"-f", "'my file'", "-o", "'", "'my out'"},
     "00011[my file][][my out][.zaf][*.zaf][.xzf] in my out"},
    {"QuotedAndSplit",
     {"-f", "'a", "", "b", "c'", "'my", "out'"},
     "00001[a  b c][][my out][.zaf][*.zaf][.xzf] in my out"},
    {"WordsAreNotUnquoted",
     {"-e", "'zaf'", "-s", "", "out"},
     "00000[][][out][.'zaf'][*.'zaf'][.] in out"},
};
INSTANTIATE_TEST_SUITE_P(Driver, CommandLine, testing::ValuesIn(kCommandLines),
                         [](const auto& row) { return row.param.name; });

TEST_F(CommandLine, InputIsTheWorkingDirectoryUnlessNamed) {
  Parse({"-i", "in", "out"});
  EXPECT_EQ(input_directory_, "in");
  // The system's own working directory cannot have more than 258 characters on Windows.
  const std::size_t longest = kPathSeparator == '/' ? 259 : 250;
  const CText top = directory_.Name(std::string(150, 'a'));
  ASSERT_TRUE(MakeDirectory(top));
  for (const std::size_t length : {longest, std::size_t{260}}) {
    std::string name = std::string(top.View()) + kPathSeparator;
    name.resize(length, 'b');
    const CText directory(name), output(name + kPathSeparator + "out");
    ASSERT_TRUE(MakeDirectory(directory) && MakeDirectory(output) && EnterDirectory(directory));
    const bool fits = length == longest;
    input_directory_ = "none";
    EXPECT_EQ(Parse({"out"}) != "ERROR: _getcwd error", fits);
    EXPECT_EQ(input_directory_, fits ? name : "none");
    // The functions of the standard library cannot remove it on every system.
    ASSERT_TRUE(EnterDirectory(top) && DeleteDirectory(output) && DeleteDirectory(directory));
  }
}

// On other systems only equal texts are refused.
TEST_F(CommandLine, OtherNamesOfTheInputDirectoryAreRefusedOnWindows) {
  const std::string input = directory_.Path("in");
  for (const char* output : {"IN", "in/out/.."}) {
    const std::string messages = Parse({"-i", input.c_str(), directory_.Path(output).c_str()});
    const bool is_refused = messages.starts_with("ERROR: The output directory must be different");
    EXPECT_EQ(is_refused, kDirectoriesHaveManyNames);
  }
}

}  // namespace
}  // namespace zaf
