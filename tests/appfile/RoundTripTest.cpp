// Reads documents and writes them again: the bytes must be the same, except for changes by design.

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

#include "foundation/CaseFolding.h"
#include "tests/support/Convert.h"
#include "tests/support/NamedChanges.h"

namespace zaf {
namespace {

namespace fs = std::filesystem;
using test::ReadFile;

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

/// A file that reads all sections by virtual operations, since it could override some.
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

// The fuzz target of this name repeats this until no change remains.
TEST(RoundTrip, DocumentsStayButForWhatChangesByDesign) {
  std::set<std::string_view> seen{test::kNamelessJoin};  // Such a document is refused.
  int unchanged = 0;
  for (const fs::path& path : Files()) {
    SCOPED_TRACE(path);
    const std::string document = test::ToXml(ReadFile(path));
    if (document.starts_with("status")) continue;
    const std::set<std::string_view> changes = test::FindNamedChanges(document);
    const std::string next = test::ToXml(document);
    if (next == document) {
      ++unchanged;
    } else if (test::WithoutSignatures(next) != test::WithoutSignatures(document)) {
      EXPECT_FALSE(changes.empty()) << document << "becomes\n" << next;
      seen.insert(changes.begin(), changes.end());
    }
  }
  EXPECT_GT(unchanged, 200);
  for (const test::TElementChange& change : test::kElementChanges)
    EXPECT_TRUE(seen.contains(change.name)) << change.name << " no longer occurs";
}

void ReplaceAll(std::string& text, std::string_view found, std::string_view replacement) {
  for (std::size_t at = 0; (at = text.find(found, at)) != std::string::npos;)
    text.replace(at, found.size(), replacement);
}

/// A document without the parts that the legacy form changes by design: a value of an assign action
/// gets a line feed after each carriage return whenever it is read, and an empty content type or
/// character set of a mail is not written and so becomes the default.
std::string WithoutLegacyChanges(std::string document) {
  constexpr std::string_view kEnd = "</AssignAction>";
  for (std::size_t at = 0; (at = document.find("<AssignAction ", at)) != std::string::npos;) {
    const std::size_t size = document.find(kEnd, at) - at;
    std::string action = document.substr(at, size);
    ReplaceAll(action, "\r\n\n", "\r\n");
    document.replace(at, size, action);
    at += action.size();
  }
  ReplaceAll(document, "<ContentType/>", "<ContentType>text/plain</ContentType>");
  ReplaceAll(document, "<CharacterSet/>", "<CharacterSet>iso-8859-1</CharacterSet>");
  return document;
}

/// Whether two actions have the same name in a legacy file.
bool HasNameTwice(const TZanfoFile& file) {
  std::set<std::string> names;
  for (const TActionEntry* entry = file.GetApplication().actions.GetRoot(); entry != nullptr;
       entry = TActionTree::GetNext(*entry)) {
    std::string name(entry->action->GetName().View().substr(0, 31));
    std::transform(name.begin(), name.end(), name.begin(), ToUpper);
    if (!names.insert(name).second) return true;
  }
  return false;
}

/// Expects that an application written in the legacy form is read back equal in all of its fields.
void ExpectSurvivesLegacyForm(TZanfoFile& file) {
  const std::string written = test::SaveToLegacy(file);
  if (written == "save failed") {
    EXPECT_TRUE(HasNameTwice(file));
    return;
  }
  TZanfoFile again;
  again.SetKind(file.GetApplication().kind);
  ASSERT_EQ(test::LoadBytes(written, again), Status::kOk);
  const bool is_equal = file.IsEqual(again) && test::SaveToLegacy(again) == written;
  const std::string before = test::SaveToXml(file);
  const std::string after = test::SaveToXml(again);
  EXPECT_EQ(WithoutLegacyChanges(after), WithoutLegacyChanges(before));
  EXPECT_TRUE(is_equal || after != before) << before;
}

TEST(RoundTrip, EveryApplicationSurvivesTheLegacyForm) {
  for (const fs::path& path : Files()) {
    SCOPED_TRACE(path);
    TZanfoFile file;
    if (test::LoadBytes(ReadFile(path), file) != Status::kOk) continue;
    ExpectSurvivesLegacyForm(file);
    TZanfoFile document;  // The content that its document preserves.
    if (test::LoadBytes(test::SaveToXml(file), document) == Status::kOk)
      ExpectSurvivesLegacyForm(document);
  }
}

}  // namespace
}  // namespace zaf
