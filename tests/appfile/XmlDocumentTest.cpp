#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

using test::DocumentWith;
using test::ElementOf;
using test::Expected;
using test::LegacyFile;
using test::TLoadedFile;
using test::ToXml;
using testing::HasSubstr;

TEST(XmlDocument, PropertiesOfTheApplicationAreWrittenInOrder) {
  EXPECT_EQ(ToXml(LegacyFile().Bytes()), Expected("application-empty"));
  LegacyFile file;
  file.Text("vers", "r<1>").Text("athr", "\"A\"\t\r\n\x01").Text("titl", "T & Co");
  file.Number("dbug", 0xFFFFFFFF).Text("cmnt", "a\xE9").Text("asts", "sig").Text("form", "f");
  file.Number("htyp", 0x6F636920).Text("dsrc", "dsn").Text("user", "me").Action("null", "A");
  const std::string document = ToXml(file.Bytes());
  EXPECT_EQ(document, Expected("application"));
  EXPECT_EQ(ToXml(document), document);
  EXPECT_THAT(ToXml(LegacyFile().Number("htyp", 1).Bytes()),
              HasSubstr("<DataSource ID=\"DataSource.0\">"));
}

TEST(XmlDocument, ClassFileDiffersInItsRootAlone) {
  TZanfoFile file;
  file.SetKind(DocumentKind::kClassFile);
  ASSERT_EQ(test::LoadBytes(LegacyFile().Bytes(), file), Status::kOk);
  const std::string document = test::SaveToXml(file);
  EXPECT_THAT(document, HasSubstr("<!DOCTYPE ZCF SYSTEM \"zanfo.dtd\">\n<ZCF Version="));
  EXPECT_EQ(ToXml(document), document);
}

TEST(XmlDocument, ReferencesTakeActionsOfOneIdInTurnAndOthersHangUnderTheRoot) {
  const std::string document = ToXml(DocumentWith(
      R"(<ResultAction ID="A"><Comments>1</Comments></ResultAction><ResultAction ID="B"/>)"
      R"(<ResultAction ID="A"><Comments>2</Comments></ResultAction><ResultAction/>)",
      R"(<ActionRef Ref="A"><other/><ActionRef Ref="A"/></ActionRef>)"));
  EXPECT_EQ(test::Compact(ElementOf(document, "Program")),
            R"(<Program><ActionRef Ref="A"><ActionRef Ref="A"/></ActionRef><ActionRef Ref="B"/>)"
            R"(<ActionRef Ref=""/></Program>)");
  EXPECT_LT(document.find(">1<"), document.find(">2<"));
}

TEST(XmlDocument, MalformedOnesAreRefused) {
  // Each with the text at its place in the second line, if it has one.
  const std::pair<std::string, std::string> documents[] = {
      {"<?xml version=\"1.0\"?>\n<ZAP/>", "ZAP"},
      {"<?xml version=\"1.0\"?>\n<ZAF/><ZAF/>", "<ZAF/>"},
      {"<?xml version=\"1.0\"?>\n<ZAF><Actions></ZAF>", "ZAF>"},
      {DocumentWith("<IfAction/><DanceAction/>", ""), "DanceAction"},
      {DocumentWith("<BeginTransactionAction><Isolation>x</Isolation></BeginTransactionAction>",
                    ""),
       "BeginTransactionAction><Isolation"},
      {DocumentWith("<ResultAction ID='A'/>", "<ActionRef Ref='B'/>"), "ActionRef"},
      {DocumentWith("", "<ActionRef/>"), "ActionRef"},
      {DocumentWith("<ResultAction ID='A'/>", "<ActionRef Ref='A'/><ActionRef Ref='A' />"),
       "ActionRef Ref='A' "},
      {"<?zanfo protected ?>\n12345678", ""},
      {"<?zanfo protected ?>\n" + std::string(64, 'x'), ""},
  };
  for (const auto& [document, refused] : documents) {
    TZanfoFile file;
    EXPECT_EQ(test::LoadBytes(document, file), Status::kMalformed) << document;
    const TErrorPlace& place = file.GetErrorPlace();
    EXPECT_EQ(place.line, refused.empty() ? 0 : 2) << document;
    const std::size_t line = document.find('\n');
    EXPECT_EQ(place.column, refused.empty() ? 0 : document.rfind(refused) - line) << document;
  }
}

TEST(XmlDocument, RunOnlyApplicationIsSavedProtectedAndReadsBack) {
  TLoadedFile file(LegacyFile("rdoc").Action("null", "Secret").Bytes());
  const std::string saved = test::SaveToXml(file, Protection::kProtected);
  EXPECT_TRUE(saved.starts_with("<?zanfo protected ?>\n"));
  EXPECT_EQ(saved.find("Secret"), std::string::npos);
  EXPECT_EQ(test::SaveToXml(file, Protection::kProtected), saved);
  const TLoadedFile again(saved);
  EXPECT_TRUE(again.IsRunOnly());
  EXPECT_TRUE(again.IsEqual(file));
}

TEST(XmlDocument, ReferencesMayNotMultiplyTheText) {
  const auto document_with_references = [](int count) {
    std::string actions;
    for (int i = 0; i < count; ++i)
      actions += "<ResultAction><ResultsOutput Ref='x'/></ResultAction>";
    return DocumentWith(actions, "", "",
                        "<Output ID='x'>" + std::string(1 << 20, 'x') + "</Output>");
  };
  EXPECT_NO_THROW(TLoadedFile(document_with_references(30)));
  TZanfoFile beyond;
  EXPECT_EQ(test::LoadBytes(document_with_references(35), beyond), Status::kMalformed);
}

TEST(XmlDocument, RunOnlyInstructionDoesNotProtectAPlainDocument) {
  EXPECT_FALSE(TLoadedFile("<?xml version=\"1.0\"?><?zanfo run-only?><ZAF/>").IsRunOnly());
}

TEST(XmlDocument, EqualityCountsApplicationActionsAndShape) {
  const auto file = [](std::string_view title, std::uint32_t debug) {
    LegacyFile legacy;
    legacy.Text("titl", title).Number("dbug", debug);
    return legacy.Action("cntr", "R").Action("null", "A", "R");
  };
  const auto equal = [&](const LegacyFile& other) {
    return TLoadedFile(file("T", 0).Bytes()).IsEqual(TLoadedFile(other.Bytes()));
  };
  EXPECT_TRUE(equal(file("T", 0).Number("htyp", 1)));
  EXPECT_FALSE(equal(file("T", 0).Text("cmnt", "x")));
  EXPECT_FALSE(equal(file("T", 0).Action("null", "B", "R")));
  EXPECT_FALSE(equal(file("t", 0)));
  EXPECT_FALSE(equal(file("T", 1)));
}

}  // namespace
}  // namespace zaf
