// Makes legacy sample files, with the model's legacy writer, from XML documents that describe them:
// make_samples SOURCE-DIRECTORY OUTPUT-DIRECTORY. A source whose name ends in ".run-only.xml"
// becomes a run-only file, one whose root is `ZCF` a class file.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "appfile/TZanfoFile.h"

namespace {

using namespace zaf;
namespace fs = std::filesystem;

constexpr std::string_view kRunOnlyEnding = ".run-only";

bool MakeSample(const fs::path& source, const fs::path& directory) {
  TDataFile input;
  TZanfoFile file;
  if (input.Open(CText(std::string_view(source.string())), TOpenMode::kRead) != Status::kOk ||
      file.Load(input, nullptr) != Status::kOk)
    return false;
  std::string stem = source.stem().string();
  if (stem.ends_with(kRunOnlyEnding)) {
    stem.resize(stem.size() - kRunOnlyEnding.size());
    file.SetRunOnly(true);
  }
  const bool is_class_file = file.GetApplication().kind == DocumentKind::kClassFile;
  const fs::path target = directory / (stem + (is_class_file ? ".zcf" : ".zaf"));
  TDataFile output;
  const bool is_written =
      output.Open(CText(std::string_view(target.string())), TOpenMode::kCreate) == Status::kOk &&
      file.SaveLegacy(output) == Status::kOk;
  output.Close();
  return is_written;
}

}  // namespace

int main(int argument_count, char** arguments) {
  if (argument_count != 3) {
    std::fprintf(stderr, "usage: make_samples SOURCE-DIRECTORY OUTPUT-DIRECTORY\n");
    return 2;
  }
  std::vector<fs::path> sources;
  for (const auto& entry : fs::directory_iterator(arguments[1]))
    if (entry.path().extension() == ".xml") sources.push_back(entry.path());
  std::sort(sources.begin(), sources.end());
  bool is_complete = !sources.empty();
  for (const fs::path& source : sources) {
    const bool is_made = MakeSample(source, arguments[2]);
    std::printf("%s %s\n", is_made ? "made  " : "FAILED", source.filename().string().c_str());
    is_complete = is_complete && is_made;
  }
  return is_complete ? 0 : 1;
}
