#include <gtest/gtest.h>
#include <string>

#include "actions/TQuerySpecification.h"
#include "actions/database/TDataSourceWriter.h"
#include "actions/flow/TBranchTrueSpecification.h"
#include "actions/flow/TContainerSpecification.h"
#include "actions/flow/TStopSpecification.h"
#include "dom/Serializer.h"
#include "fields/WriteTextElement.h"
#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

using test::ElementOf;
using test::LegacyFile;
using test::TLoadedFile;
using test::ToXml;

std::string Long(std::string_view middle) {
  return std::string(100, 'x') + std::string(middle) + std::string(100, 'y');
}

TEST(WriteTextElement, ChoosesTextOrCdata) {
  const std::pair<std::string, std::string> texts[] = {
      {"", ""},
      {"Hello, world.", "Hello, world."},
      {"!#$%()*+,-./:;=?@[]^_`{|}~", "!#$%()*+,-./:;=?@[]^_`{|}~"},
      {"\n", "\n"},
      {"a < b", "<![CDATA[a < b]]>"},
      {"it's", "<![CDATA[it's]]>"},
      {"\t", "<![CDATA[\t]]>"},
      {Long("\r"), "<![CDATA[" + Long("\r") + "]]>"},
      {"\x7F", "<![CDATA[\x7F]]>"},
      {Long("\x80"), "<![CDATA[" + Long("\x80") + "]]>"},
      {"   ", "<![CDATA[   ]]>"},
      {std::string(" \0 ", 3), "<![CDATA[  ]]>"},
      {"\x01\x02", "<![CDATA[]]>"},
      {Long("a\x1F") + "b", Long("a") + "b"},
      {"a]]>b", "<![CDATA[a]]]]><![CDATA[>b]]>"},
      {"]]\x02>]]>", "<![CDATA[]]]]><![CDATA[>]]]]><![CDATA[>]]>"},
      {"]]", "]]"},
  };
  for (const auto& [text, content] : texts) {
    const dom::Document document = dom::DOMImplementation::createDocument();
    const dom::Element root = document.createElement("R");
    document.appendChild(root);
    TDataSourceWriter data_sources;
    TXmlWriteContext context{root, root, data_sources};
    WriteTextElement({context, root, {}}, "T", text);
    dom::OutputBuffer output;
    ASSERT_TRUE(dom::Serialize(document, output));
    const std::string element = text.empty() ? "<T/>" : "<T>" + content + "</T>";
    EXPECT_EQ(output.View(), "<R>\n  " + element + "\n</R>\n");
  }
}

TEST(QuerySpecification, EverythingIsWrittenInOrderAndReadBack) {
  LegacyFile file;
  file.Action("glob", "A<").Text("err ", "oops").Text("none", "n&").Text("rslt", "A\rB\r\n");
  file.Text("cmnt", "c\r").Number("expd", 7).Number("push", 1);
  const std::string document = ToXml(file.Bytes());
  EXPECT_EQ(ElementOf(document, "ResultAction"),
            R"(<ResultAction ID="A&lt;" Sig="a5f2e479" PushResults="True" Expanded="True">
      <Comments><![CDATA[c)"
            "\r"
            R"(]]></Comments>
      <ResultsOutput Ref="A&lt;.Results"/>
      <NoResultsOutput Ref="A&lt;.NoResults"/>
      <ErrorOutput Ref="A&lt;.Error"/>
    </ResultAction>)");
  EXPECT_EQ(ElementOf(document, "Outputs"),
            "<Outputs>\n"
            "    <Output ID=\"A&lt;.Results\" Type=\"HTML\"><![CDATA[A\r\nB\r\n\n]]></Output>\n"
            "    <Output ID=\"A&lt;.NoResults\" Type=\"HTML\"><![CDATA[n&]]></Output>\n"
            "    <Output ID=\"A&lt;.Error\" Type=\"HTML\">oops</Output>\n"
            "  </Outputs>");
  const std::string again = ToXml(document);
  EXPECT_EQ(ElementOf(again, "Outputs").find('\r'), std::string::npos);
  EXPECT_EQ(ToXml(again), again);
}

TEST(QuerySpecification, SwitchesTakeOnlyPositiveNumbers) {
  const std::string negative = LegacyFile().Action("null", "A").Number("push", 0x80000000).Bytes();
  EXPECT_EQ(ToXml(negative).find("PushResults"), std::string::npos);
}

TEST(QuerySpecification, AssignmentsAreKeptAndLongOnesCountAlone) {
  const auto record = [](std::string_view name, std::string_view value, std::size_t width) {
    return test::Slot(name, 32) + test::Slot(value, width);
  };
  TLoadedFile file(LegacyFile()
                       .Action("null", "A")
                       .Payload("assn", record("a", "short", 256))
                       .Payload("assx", record("a", std::string(300, 'v'), 1024) + "cut")
                       .Payload("assn", record("a", "late", 256))
                       .Bytes());
  const std::string legacy = test::SaveToLegacy(file);
  EXPECT_NE(legacy.find(record("a", std::string(300, 'v'), 1024)), std::string::npos);
  EXPECT_NE(legacy.find(record("a", std::string(255, 'v'), 256)), std::string::npos);
  EXPECT_EQ(legacy.find("late"), std::string::npos);
  EXPECT_EQ(legacy.find("short"), std::string::npos);
}

TEST(QuerySpecification, EditorPropertiesAreNumberedFromOneToFiveAndIgnoreNull) {
  using Action = TQuerySpecification;
  constexpr void (Action::*kSetters[])(const char*) = {&Action::SetComments, &Action::SetResults,
                                                       &Action::SetNoResults, &Action::SetError};
  Action action;
  std::int32_t id = 0;
  std::uint32_t flags = 1;
  CText text;
  ASSERT_EQ(action.GetFirstProperty(id, flags), 0);
  for (std::int32_t expected = 1; expected <= 5; ++expected) {
    EXPECT_EQ(id, expected);
    for (const char* const value : {"set", static_cast<const char*>(nullptr)}) {
      if (id > 1) (action.*kSetters[id - 2])(value);
      EXPECT_EQ(action.GetProperty(text, id), 0);
      EXPECT_EQ(text.View(), id > 1 ? "set" : "");
    }
    EXPECT_EQ(action.SetProperty(std::to_string(id).c_str(), id), -2);
    EXPECT_EQ(action.SetProperty(nullptr, id), -2);
    EXPECT_EQ(action.GetProperty(text, id), 0);
    EXPECT_EQ(text.View(), std::to_string(id));
    EXPECT_EQ(action.GetNextProperty(id, flags), expected < 5 ? 0 : -1);
  }
  action.GetResults(text);
  EXPECT_EQ(text.View(), "3");
  id = 6;
  EXPECT_EQ(action.GetNextProperty(id, flags), -2);
  EXPECT_EQ(action.GetProperty(text, id), -2);
  EXPECT_FALSE(action.IsProperty(0) || action.IsProperty(6));
  EXPECT_EQ(action.GetName().View(), "1");
}

TEST(QuerySpecification, StateOfTheRunTimeIsClonedOnly) {
  TStopSpecification stop;
  stop.GetRunTexts()[1] = "b";
  TBranchTrueSpecification jump;
  jump.SetRunState(7);
  std::unique_ptr<TQuerySpecification> clone;
  ASSERT_EQ(stop.Clone(clone), Status::kOk);
  EXPECT_EQ(static_cast<TStopSpecification&>(*clone).GetRunTexts()[1].View(), "b");
  EXPECT_TRUE(clone->IsEqual(TStopSpecification()));
  clone.reset();
  ASSERT_EQ(jump.Clone(clone), Status::kOk);
  EXPECT_EQ(clone->GetRunState(), 7);
  EXPECT_TRUE(clone->IsEqual(TBranchTrueSpecification()));
}

TEST(QuerySpecification, SectionsWithoutAFileAreRefused) {
  TQuerySpecification action;
  EXPECT_EQ(action.ReadLegacyProperty({nullptr, Code("rslt"), 0, 0, nullptr}), Status::kNoFile);
  EXPECT_EQ(action.ReadLegacy(nullptr, {}), Status::kNoFile);
}

TEST(QuerySpecification, SectionThatCannotBeReadLeavesItsFieldAsItWas) {
  TDataFile file(AsBytes("note"));
  TContainerSpecification read;
  TContainerSpecification expected;
  for (const std::string_view code : {"cmnt", "rslt"})
    for (TQuerySpecification* const action : {&expected, &read})
      ASSERT_EQ(test::ReadSection(*action, code, "note"), Status::kOk);
  for (const std::string_view code : {"cmnt", "rslt"})
    EXPECT_EQ(read.ReadLegacyProperty({&file, CodeOfText(code), 1, 4, nullptr}), Status::kFailure);
  EXPECT_TRUE(read.IsEqual(expected));
}

TEST(QuerySpecification, RecordSizeGrowsByNameAndSections) {
  const TLoadedFile file(
      LegacyFile().Action("null", "Abc").Text("cmnt", "12345").Payload("xxxx", "12").Bytes());
  EXPECT_EQ(file.GetApplication().total_record_size, 168U + 3 + 6 + 2);
}

TEST(QuerySpecification, OnlyContainersGoOnToTheirChildren) {
  LegacyFile legacy;
  legacy.Action("cntr", "R").Action("cntr", "A", "R").Action("null", "B", "A");
  legacy.Action("if  ", "I", "R").Action("null", "C", "I").Action("null", "D", "R");
  const TLoadedFile file(legacy.Bytes());
  std::string walk;
  for (const TActionEntry* entry = file.GetApplication().actions.GetRoot(); entry != nullptr;
       entry = TActionTree::GetNext(*entry)) {
    const TActionEntry* next = entry->action->GetNextInTree();
    walk.append(entry->action->GetName().View()).append(entry->action->IsLeaf() ? ">" : "+");
    walk.append(next == nullptr ? "end" : next->action->GetName().View()).append(" ");
  }
  EXPECT_EQ(walk, "R>A A>B B>end I+D C>end D>end ");
}

}  // namespace
}  // namespace zaf
