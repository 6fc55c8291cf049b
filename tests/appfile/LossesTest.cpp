// What an observer is told of: for each code a file in which the loss occurs and a file that is
// nearly the same and in which it does not.

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "fields/TLossObserver.h"
#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

using namespace std::string_literals;
using test::BigEndian;
using test::DocumentWith;
using test::LegacyFile;
using test::ListOf;

struct TLossList final : TLossObserver {
  void OnLoss(const TLoss& loss) override { losses.push_back(loss); }
  std::vector<TLoss> losses;
};

/// The losses of a file that is loaded and written as XML.
std::vector<TLoss> LossesOf(std::string_view bytes) {
  TLossList list;
  TZanfoFile file;
  file.SetObserver(&list);
  EXPECT_EQ(test::LoadBytes(bytes, file), Status::kOk);
  test::SaveToXml(file);
  return list.losses;
}

/// A file with a root and an action of this type, which has what `add` adds.
template <class Add>
std::string Legacy(std::string_view type, Add add) {
  LegacyFile file;
  file.Action("cntr", TActionTree::kRootName).Action(type, "A");
  add(file);
  return file.Bytes();
}

std::string With(std::string_view type, std::string_view code, std::string_view payload) {
  return Legacy(type, [&](LegacyFile& file) { file.Payload(code, payload); });
}

std::string Document(std::string_view action) {
  return DocumentWith(action, "<ActionRef Ref=\"A\"/>");
}

struct TCase {
  const char* name;
  LossCode code;
  std::string lossy;
  std::string whole;
};

/// A file with an action A whose header counts other sections.
std::string WithMapCount(std::string bytes, std::uint32_t count) {
  const std::size_t name = bytes.rfind("A"s + std::string(31, '\0'));
  return bytes.replace(name - 4, 4, BigEndian(count));
}

std::vector<TCase> Cases() {
  const std::string results = With("null", "cmnt", "text\0"s);
  const std::string wide(200, 'w');
  const auto criteria = [](std::size_t size) {
    return With("srch", "crit",
                ListOf(1, std::string(size, '\0').replace(128, 150, std::string(150, 'v'))));
  };
  return {
      {"UnknownSection", LossCode::kSectionUnknown, With("null", "????", "x"), results},
      {"Dropped", LossCode::kSectionDropped, With("goto", "comp", "x"),
       With("goto", "comp", "\0"s)},
      {"Assignments", LossCode::kSectionDropped, With("null", "assn", std::string(288, 'a')),
       results},
      {"DataSourceOfCommit", LossCode::kSectionDropped, With("endt", "dsrc", "x\0"s),
       With("srch", "dsrc", "x\0"s)},
      {"Repeated", LossCode::kSectionRepeated,
       Legacy("null", [](LegacyFile& file) { file.Text("cmnt", "1").Text("cmnt", "2"); }),
       Legacy("srch",
              [](LegacyFile& file) {
                file.Text("cmnt", "1").Text("cmnt", "1");
                file.Payload("tabl", ListOf(1, "t\0"s)).Payload("tabl", ListOf(1, "u\0"s));
              })},
      {"MapThatIsNotWhole", LossCode::kSectionMalformed,
       WithMapCount(With("null", "cmnt", "\0"s), 100), results},
      {"ShortTextList", LossCode::kSectionMalformed, With("srch", "tabl", ListOf(4, "t\0u\0"s)),
       With("srch", "tabl", ListOf(2, "t\0u\0"s))},
      {"LongNumber", LossCode::kSectionMalformed, With("null", "push", "\0\0\0\1x"s),
       With("null", "push", "\0\0\0\1"s)},
      {"RestOfAList", LossCode::kSectionMalformed,
       With("srch", "grup", ListOf(2, std::string(513, 'g'))),
       With("srch", "grup", ListOf(2, std::string(512, 'g')))},
      {"ShortParameters", LossCode::kSectionMalformed, With("aevt", "aevx", "t\0\0\0\0\2n\0v\0"s),
       With("aevt", "aevx", "t\0\0\0\0\1n\0v\0"s)},
      {"Unreferenced", LossCode::kBytesUnreferenced, results + "x", results + '\0'},
      {"CriteriaOfUnknownSize", LossCode::kRecordDropped, criteria(500), criteria(1024)},
      {"JoinOfUnknownSize", LossCode::kRecordDropped,
       With("srch", "join", ListOf(1, std::string(99, 'j'))),
       With("srch", "join", ListOf(1, std::string(512, 'j') + "iseq" + std::string(132, '\0')))},
      {"ItemWithoutColumn", LossCode::kRecordDropped,
       With("igrp", "fval", ListOf(1, std::string(388, 'i'))), results},
      {"UpgradedText", LossCode::kTextCut, criteria(448), criteria(1024)},
      {"TextOfADocument", LossCode::kTextCut,
       Document("<SearchAction ID=\"A\"><GroupColumns><GroupColumn><TableName>" + wide +
                "</TableName></GroupColumn></GroupColumns></SearchAction>"),
       Document("<SearchAction ID=\"A\"><GroupColumns><GroupColumn><TableName>t</TableName>"
                "</GroupColumn></GroupColumns></SearchAction>")},
      {"Number", LossCode::kValueUnknown, With("srch", "htyp", "none"),
       With("srch", "htyp", "odbc")},
      {"Word", LossCode::kValueUnknown, Document("<ResultAction ID=\"A\" PushResults=\"yes\"/>"),
       Document("<ResultAction ID=\"A\" PushResults=\"True\"/>")},
      {"Control", LossCode::kCharacterDropped, With("null", "cmnt", "a\1b\0"s), results},
      {"HighCharacter", LossCode::kCharacterReplaced,
       Document("<ResultAction ID=\"A\"><Comments>&#x2022;</Comments></ResultAction>"),
       Document("<ResultAction ID=\"A\"><Comments>&#xFF;</Comments></ResultAction>")},
      {"CarriageReturn", LossCode::kLineEndChanged, With("null", "cmnt", "a\rb\0"s),
       With("null", "cmnt", "a\nb\0"s)},
      {"UnusedOutput", LossCode::kNodeIgnored,
       DocumentWith("<ResultAction ID=\"A\"/>", "<ActionRef Ref=\"A\"/>", "",
                    "<Output ID=\"A.Results\" Type=\"HTML\">x</Output>"),
       DocumentWith("<ResultAction ID=\"A\"><ResultsOutput Ref=\"A.Results\"/></ResultAction>",
                    "<ActionRef Ref=\"A\"/>", "",
                    "<Output ID=\"A.Results\" Type=\"HTML\">x</Output>")},
  };
}

TEST(Losses, AreReportedWhereTheyOccurAndNowhereElse) {
  for (const TCase& test : Cases()) {
    SCOPED_TRACE(test.name);
    const std::vector<TLoss> losses = LossesOf(test.lossy);
    EXPECT_EQ(losses.size(), 1U);
    for (const TLoss& loss : losses) EXPECT_EQ(loss.code, test.code) << loss.text;
    for (const TLoss& loss : LossesOf(test.whole)) ADD_FAILURE() << loss.text;
  }
}

TEST(Losses, HaveThePlaceOfTheirSection) {
  const std::string bytes = With("null", "????", "unknown");
  const std::vector<TLoss> losses = LossesOf(bytes);
  ASSERT_EQ(losses.size(), 1U);
  EXPECT_EQ(losses[0].action, "A");
  EXPECT_EQ(losses[0].section, Code("????"));
  EXPECT_TRUE(losses[0].has_range);
  EXPECT_EQ(bytes.substr(losses[0].offset, losses[0].length), "unknown");
}

TEST(Losses, OfXmlAreNoneOfALegacyFile) {
  TLossList list;
  TZanfoFile file;
  file.SetObserver(&list);
  ASSERT_EQ(test::LoadBytes(With("goto", "comp", "x"), file), Status::kOk);
  test::SaveToLegacy(file);
  EXPECT_TRUE(list.losses.empty());
}

TEST(Losses, OfTheSamplesAreFew) {
  for (const auto& entry : std::filesystem::directory_iterator(ZAF2XML_SAMPLES)) {
    const std::string extension = entry.path().extension().string();
    if (extension != ".zaf" && extension != ".zcf") continue;
    std::ifstream file(entry.path(), std::ios::binary);
    for (const TLoss& loss : LossesOf(std::string(std::istreambuf_iterator<char>(file), {})))
      EXPECT_EQ(loss.code, LossCode::kLineEndChanged) << entry.path() << ": " << loss.text;
  }
}

}  // namespace
}  // namespace zaf
