// Documents that are read and written again: the same bytes, but for what changes by design.

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "fuzz/NamedChanges.h"
#include "fuzz/WellFormed.h"
#include "tests/support/Convert.h"

namespace zaf {
namespace {

namespace fs = std::filesystem;

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The samples, their sources and the seeds of the fuzz targets.
std::vector<fs::path> Files() {
  std::vector<fs::path> files;
  const std::string samples = ZAF2XML_SAMPLES;
  const std::string made = ZAF2XML_CORPUS;
  for (const std::string& directory :
       {samples, samples + "/../fuzz/corpus/legacy", samples + "/../fuzz/corpus/xml", made}) {
    for (const auto& entry : fs::recursive_directory_iterator(directory)) {
      const std::string extension = entry.path().extension().string();
      const bool is_other =
          extension == ".md" || extension == ".cpp" || extension == ".txt" || extension == ".dict";
      if (entry.is_regular_file() && !is_other) files.push_back(entry.path());
    }
  }
  return files;
}

/// A file whose sections are all read by virtual operations: it could override some.
class TDerivedFile final : public TDataFile {
 public:
  using TDataFile::TDataFile;
};

TEST(RoundTrip, LegacyFilesLoadAlikeFromMemoryStreamsAndSubclasses) {
  int legacy_files = 0;
  for (const fs::path& path : Files()) {
    SCOPED_TRACE(path);
    std::string bytes = ReadFile(path);
    TZanfoFile usual;
    const Status status = test::LoadBytes(bytes, usual);
    if (bytes.empty() || !usual.GetApplication().is_legacy) continue;
    ++legacy_files;
    TDerivedFile derived(AsBytes(bytes));
    TDataFile stream(std::fopen(path.string().c_str(), "rb"));
    for (TDataFile* const file : {static_cast<TDataFile*>(&derived), &stream}) {
      TZanfoFile other;
      EXPECT_EQ(other.Load(*file, nullptr), status);
      EXPECT_EQ(test::SaveToXml(other), test::SaveToXml(usual));
    }
  }
  EXPECT_GT(legacy_files, 20);
}

TEST(RoundTrip, DocumentsStayButForWhatChangesByDesign) {
  std::map<std::string_view, int> changed;
  int unchanged = 0;
  for (const fs::path& path : Files()) {
    SCOPED_TRACE(path);
    TZanfoFile file;
    if (test::LoadBytes(ReadFile(path), file) != Status::kOk) continue;
    std::string document = test::SaveToXml(file);
    const std::size_t most_changes = fuzz::FindMostChanges(document);
    for (std::size_t round = 0;; ++round) {
      EXPECT_TRUE(fuzz::IsWellFormed(document)) << document;
      const std::set<std::string_view> changes = fuzz::FindNamedChanges(document);
      TZanfoFile again;
      const Status status = test::LoadBytes(document, again);
      if (status == Status::kMalformed && changes.contains(fuzz::kNamelessJoin)) break;
      ASSERT_EQ(status, Status::kOk);
      const std::string next = test::SaveToXml(again);
      if (fuzz::WithoutSignatures(next) == fuzz::WithoutSignatures(document)) {
        // The signature of a container or a jump, which became a results action, is another one.
        unchanged += next == document ? 1 : 0;
        break;
      }
      ASSERT_FALSE(changes.empty()) << document << "becomes\n" << next;
      for (const std::string_view change : changes) ++changed[change];
      ASSERT_LT(round, most_changes) << "it changes every time";
      document = next;
    }
  }
  EXPECT_GT(unchanged, 250);
  // Each change by design is seen, so that the list above names none that has gone.
  changed[fuzz::kNamelessJoin] = 1;  // Such a document is refused, see above.
  for (const fuzz::TElementChange& change : fuzz::kElementChanges)
    EXPECT_GT(changed[change.name], 0) << change.name;
}

TEST(RoundTrip, LegacyFilesReadBackEqual) {
  for (const fs::path& path : Files()) {
    SCOPED_TRACE(path);
    TZanfoFile file;
    if (test::LoadBytes(ReadFile(path), file) != Status::kOk) continue;
    // Written once, a return in an output has got its line feed and names have been cut.
    TZanfoFile once;
    once.SetKind(file.GetApplication().kind);
    if (test::LoadBytes(test::SaveToLegacy(file), once) != Status::kOk) continue;
    const std::string written = test::SaveToLegacy(once);
    TZanfoFile twice;
    twice.SetKind(file.GetApplication().kind);
    ASSERT_EQ(test::LoadBytes(written, twice), Status::kOk);
    if (test::SaveToXml(once).find('\r') != std::string::npos) continue;
    EXPECT_TRUE(twice.IsEqual(once));
    EXPECT_EQ(test::SaveToLegacy(twice), written);
    EXPECT_EQ(test::SaveToXml(twice), test::SaveToXml(once));
  }
}

}  // namespace
}  // namespace zaf
