// Checks the losses that an observer receives: for each code a file in which the loss occurs, and a
// similar one without it.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "fields/TLossObserver.h"
#include "foundation/CCipherText.h"
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
  void OnLoss(TLoss&& loss) override { losses.push_back(std::move(loss)); }
  std::vector<TLoss> losses;
};

enum class Target : bool { kXml, kLegacy };

/// The losses of a file that is loaded and written again.
std::vector<TLoss> LossesOf(std::string_view bytes, Target target = Target::kXml) {
  TLossList list;
  TZanfoFile file;
  file.SetObserver(&list);
  EXPECT_EQ(test::LoadBytes(bytes, file), Status::kOk);
  target == Target::kXml ? test::SaveToXml(file) : test::SaveToLegacy(file);
  return list.losses;
}

/// A file with a root and an action of this type with the content that `add` adds.
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

/// A file with an action A whose header has another number of sections.
std::string WithMapCount(std::string bytes, std::uint32_t count) {
  const std::size_t name = bytes.rfind("A"s + std::string(31, '\0'));
  return bytes.replace(name - 4, 4, BigEndian(count));
}

/// A file whose last action has another format number.
std::string WithFormatOfAction(std::string bytes, std::uint32_t format) {
  const std::size_t name = bytes.rfind("A"s + std::string(31, '\0'));
  return bytes.replace(name - 16, 4, BigEndian(format));
}

std::vector<TCase> Cases() {
  const auto parameters = [](std::string_view second) {
    return Legacy("aevt", [&](LegacyFile& file) {
      file.Payload("aevx", "a\0\0\0\0\0"s)
          .Payload("aevt", "corecode" + (std::string(second) + "\0\0\0\0\0"s));
    });
  };
  const auto event = [](const std::string& code) {
    return Document("<AppleEventAction ID=\"A\"><EventClass>" + code +
                    "</EventClass></AppleEventAction>");
  };
  const std::string order = "<SearchAction ID=\"A\"><OrderColumns><OrderColumn><Ascending>";
  const std::string order_end = "</Ascending></OrderColumn></OrderColumns></SearchAction>";
  const std::string results = With("null", "cmnt", "text\0"s);
  const std::string wide(200, 'w');
  const auto criteria = [](std::size_t size) {
    return With(
        "srch", "crit",
        ListOf(
            1,
            std::string(size, '\0').replace(64, 1, "c").replace(128, 150, std::string(150, 'v'))));
  };
  const auto file_action = [](std::string_view mode, std::string_view code) {
    return Legacy("flvt",
                  [&](LegacyFile& legacy) { legacy.Payload("flmd", mode).Text(code, "x"); });
  };
  const auto criterion = [](std::size_t field) {
    return With("srch", "crit", ListOf(1, std::string(1024, '\0').replace(field, 1, "x")));
  };
  const auto input = [](std::string_view kind) {
    return With("igrp", "icol", ListOf(1, std::string(944, '\0').replace(524, 4, kind)));
  };
  const auto comparison = [](std::string word) {
    word.resize(128);
    return With("if  ", "ieei", ListOf(1, std::string(256, '\0') + word + std::string(128, '\0')));
  };
  return {
      {"UnknownSection", LossCode::kSectionUnknown, With("null", "????", "x"), results},
      {"Dropped", LossCode::kSectionDropped, With("goto", "comp", "x"),
       With("goto", "comp", "\0"s)},
      {"DroppedFarIn", LossCode::kSectionDropped,
       With("goto", "comp", std::string(5000, '\0') + "x"),
       With("goto", "comp", std::string(5001, '\0'))},
      {"Assignments", LossCode::kSectionDropped, With("null", "assn", std::string(288, 'a')),
       results},
      {"LongAndShortAssignments", LossCode::kSectionDropped,
       Legacy("null",
              [](LegacyFile& file) {
                file.Payload("assn", std::string(288, 'a'));
                file.Payload("assx", std::string(1056, 'a'));
              }),
       results},
      {"FieldOfRecords", LossCode::kSectionDropped,
       With("srch", "cols", ListOf(1, std::string(524, '\0').replace(260, 1, "x"))),
       With("srch", "cols", ListOf(1, std::string(524, '\0')))},
      {"DataSourceOfCommit", LossCode::kSectionDropped, With("endt", "dsrc", "x\0"s),
       With("srch", "dsrc", "x\0"s)},
      {"FileDataOfADelete", LossCode::kSectionDropped, file_action("d", "acsg"),
       file_action("w", "acsg")},
      {"TypeOfARead", LossCode::kSectionDropped, file_action("r", "mctp"),
       file_action("r", "acsg")},
      {"ValueWithoutColumn", LossCode::kSectionDropped, criterion(512), criterion(0)},
      {"KindOfInput", LossCode::kValueUnknown, input("none"), input("pick")},
      {"Root", LossCode::kSectionDropped,
       LegacyFile().Action("cntr", "R").Text("cmnt", "x").Number("push", 0).Bytes(),
       LegacyFile().Action("cntr", "R").Number("push", 0).Bytes()},
      {"Repeated", LossCode::kSectionRepeated,
       Legacy("null", [](LegacyFile& file) { file.Text("cmnt", "1").Text("cmnt", "2"); }),
       Legacy("srch",
              [](LegacyFile& file) {
                file.Text("cmnt", "1").Text("cmnt", "1");
                file.Payload("tabl", ListOf(1, "t\0"s)).Payload("tabl", ListOf(1, "u\0"s));
              })},
      {"RepeatedByAnotherCode", LossCode::kSectionRepeated, parameters("b"), parameters("a")},
      {"RepeatedPlatform", LossCode::kSectionRepeated,
       Legacy("endt",
              [](LegacyFile& file) { file.Payload("plat", "mac ").Payload("plat", "unix"); }),
       Legacy("endt",
              [](LegacyFile& file) { file.Payload("plat", "nt  ").Payload("plat", "unix"); })},
      {"MapThatIsNotWhole", LossCode::kSectionMalformed,
       WithMapCount(With("null", "cmnt", "\0"s), 100), results},
      {"NewerFormat", LossCode::kSectionMalformed, WithFormatOfAction(results, 0x01000004),
       WithFormatOfAction(results, 0x01000003)},
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
      {"Type", LossCode::kValueUnknown, With("????", "cmnt", "text\0"s),
       With("glob", "cmnt", "text\0"s)},
      {"Mode", LossCode::kSectionMalformed, With("flvt", "flmd", "dx"), With("flvt", "flmd", "d")},
      {"Owner", LossCode::kTextCut,
       Document("<SearchAction "
                "ID=\"A\"><OrderColumns><OrderColumn><TableName>t</TableName><TableOwner>" +
                wide.substr(0, 127) + "</TableOwner></OrderColumn></OrderColumns></SearchAction>"),
       Document(
           "<SearchAction ID=\"A\"><OrderColumns><OrderColumn><TableName>t</TableName><TableOwner>o"
           "</TableOwner></OrderColumn></OrderColumns></SearchAction>")},
      {"Platform", LossCode::kValueUnknown, With("aevt", "plat", "????"),
       With("aevt", "plat", "mac ")},
      {"Direction", LossCode::kValueUnknown, Document(order + "yes" + order_end),
       Document(order + "false" + order_end)},
      {"FileExistsRule", LossCode::kValueUnknown,
       Document("<FileAction ID=\"A\"><WriteFile FileExistsRule=\"Keep\"/></FileAction>"),
       Document("<FileAction ID=\"A\"><WriteFile FileExistsRule=\"Append\"/></FileAction>")},
      {"EventClass", LossCode::kTextCut, event("coreX"), event("core")},
      {"Word", LossCode::kValueUnknown, Document("<ResultAction ID=\"A\" PushResults=\"yes\"/>"),
       Document("<ResultAction ID=\"A\" PushResults=\"True\"/>")},
      {"Operator", LossCode::kTextCut, comparison("equal"), comparison("iseq")},
      {"Control", LossCode::kCharacterDropped, With("null", "cmnt", "a\1b\0"s), results},
      {"ControlInName", LossCode::kCharacterDropped,
       LegacyFile().Action("cntr", TActionTree::kRootName).Action("null", "A\1").Bytes(), results},
      {"ControlInTarget", LossCode::kCharacterDropped, With("adll", "exev", "a\1\0\0\0\0\0"s),
       With("adll", "exev", "a\0\0\0\0\0"s)},
      {"HighCharacter", LossCode::kCharacterReplaced,
       Document("<ResultAction ID=\"A\"><Comments>&#x2022;</Comments></ResultAction>"),
       Document("<ResultAction ID=\"A\"><Comments>&#xFF;</Comments></ResultAction>")},
      {"CarriageReturn", LossCode::kLineEndChanged, With("null", "cmnt", "a\rb\0"s),
       With("null", "cmnt", "a\nb\0"s)},
      {"UnknownElement", LossCode::kNodeIgnored,
       Document("<ResultAction ID=\"A\"><Comment>x</Comment></ResultAction>"),
       Document("<ResultAction ID=\"A\"><Comments>x</Comments></ResultAction>")},
      {"SecondElement", LossCode::kNodeIgnored,
       Document("<ResultAction ID=\"A\"><Comments/><Comments>x</Comments></ResultAction>"),
       Document("<ResultAction ID=\"A\"><Comments>x<!-- -->y</Comments></ResultAction>")},
      {"UnknownAttribute", LossCode::kNodeIgnored,
       Document("<ResultAction ID=\"A\" Sig=\"\" Name=\"x\"/>"),
       Document("<ResultAction ID=\"A\" Sig=\"\"/>")},
      {"TextBesideElements", LossCode::kNodeIgnored,
       Document("<ResultAction ID=\"A\">x<Comments/></ResultAction>"),
       Document("<ResultAction ID=\"A\">\n<Comments/></ResultAction>")},
      {"UnusedDataSource", LossCode::kNodeIgnored,
       DocumentWith("<ResultAction ID=\"A\"/>", "<ActionRef Ref=\"A\"/>",
                    "<DataSource ID=\"DataSource.0\"><DSN>x</DSN></DataSource>"),
       DocumentWith("<ResultAction ID=\"A\"/>", "<ActionRef Ref=\"A\"/>",
                    "<DataSource ID=\"DataSource.0\"><DSN>x</DSN><DataSourceInfo/></DataSource>")},
      {"UnusedOutput", LossCode::kNodeIgnored,
       DocumentWith("<ResultAction ID=\"A\"/>", "<ActionRef Ref=\"A\"/>", "",
                    "<Output ID=\"A.Results\" Type=\"HTML\">x</Output>"),
       DocumentWith("<ResultAction ID=\"A\"><ResultsOutput Ref=\"A.Results\"/></ResultAction>",
                    "<ActionRef Ref=\"A\"/>", "",
                    "<Output ID=\"A.Results\" Type=\"HTML\">x</Output>")},
  };
}

void ExpectLosses(const std::vector<TCase>& cases, Target target) {
  for (const TCase& test : cases) {
    SCOPED_TRACE(test.name);
    const std::vector<TLoss> losses = LossesOf(test.lossy, target);
    EXPECT_EQ(losses.size(), 1U);
    for (const TLoss& loss : losses) EXPECT_EQ(loss.code, test.code) << loss.GetText();
    for (const TLoss& loss : LossesOf(test.whole, target)) ADD_FAILURE() << loss.GetText();
  }
}

TEST(Losses, AreReportedWhereTheyOccurAndNowhereElse) { ExpectLosses(Cases(), Target::kXml); }

std::string Mail(std::string_view type, std::string_view parameters) {
  return Document("<MailAction ID=\"A\"><ContentType>" + std::string(type) +
                  "</ContentType><CharacterSet>x</CharacterSet><ParameterList>" +
                  std::string(parameters) + "</ParameterList></MailAction>");
}

std::string Results(std::string_view text) {
  return DocumentWith("<ResultAction ID=\"A\"><ResultsOutput Ref=\"o\"/></ResultAction>",
                      "<ActionRef Ref=\"A\"/>", "",
                      "<Output ID=\"o\">" + std::string(text) + "</Output>");
}

std::string Named(std::size_t length) {
  return DocumentWith("<ResultAction ID=\"" + std::string(length, 'n') + "\"/>", "");
}

/// A builder with two columns of these names, of which only the first has a list item.
std::string Columns(const std::string& first, const std::string& second) {
  const auto column = [](const std::string& name, std::string_view item) {
    return "<InsertColumn><ColumnName>" + name + "</ColumnName><InputOptions><InputPickList>" +
           std::string(item) + "</InputPickList></InputOptions></InsertColumn>";
  };
  return Document("<NewRecordBuilderAction ID=\"A\"><InsertColumns>" +
                  column(first, "<InputListItem/>") + column(second, "") +
                  "</InsertColumns></NewRecordBuilderAction>");
}

TEST(Losses, OfALegacyFileThatIsWritten) {
  CCipherText login("a\0b"s);
  login.Encipher();
  const auto source = [](std::string_view user) {
    return DocumentWith("<SearchAction ID=\"A\" DSID=\"D\" DeploymentDSID=\"E\"/>",
                        "<ActionRef Ref=\"A\"/>",
                        "<DataSource ID=\"D\"><UserInfo Encrypted=\"True\"><UserName>" +
                            std::string(user) + "</UserName></UserInfo></DataSource>");
  };
  const auto assigned = [](std::string_view value) {
    return Document("<AssignAction ID=\"A\"><AssignItem><Value>" + std::string(value) +
                    "</Value></AssignItem></AssignAction>");
  };
  const auto branch = [](std::string_view name) {
    return Document("<BranchAction ID=\"A\"><DocumentName>" + std::string(name) +
                    "</DocumentName></BranchAction>");
  };
  ExpectLosses(
      {{"Name", LossCode::kTextCut, Named(32), Named(31)},
       {"Login", LossCode::kTextCut, source(login.View()), source("ab")},
       {"Parameters", LossCode::kRecordDropped, Mail("t", "<ParameterItem>x</ParameterItem>"),
        Mail("t", "")},
       {"ItemsOfOneName", LossCode::kRecordDropped, Columns("c", "c"), Columns("c", "d")},
       {"EmptyDefault", LossCode::kValueUnknown, Mail("", ""), Mail("t", "")},
       {"PathTag", LossCode::kValueUnknown, branch("&lt;@APPFILEPATH>/x"),
        branch("&lt;@APPFILEPATH>x/")},
       {"ReturnOfOutput", LossCode::kLineEndChanged, Results("a&#13;\nb&#13;c"),
        Results("a&#13;\nb\nc")},
       {"ReturnOfValue", LossCode::kLineEndChanged, assigned("a&#13;b"), assigned("a\nb")}},
      Target::kLegacy);
  TLossList list;
  TZanfoFile file;
  file.SetObserver(&list);
  ASSERT_EQ(test::LoadBytes(With("mail", "ctyp", "\0"s), file), Status::kOk);
  TDataFile output(std::tmpfile());
  EXPECT_EQ(file.SaveLegacy(output, DocumentKind::kClassFile), Status::kOk);
  ASSERT_EQ(list.losses.size(), 2U);
  EXPECT_EQ(list.losses[0].code, LossCode::kValueUnknown);  // That it becomes a class file.
  EXPECT_EQ(list.losses[1].section, Code("ctyp"));
  EXPECT_EQ(list.losses[1].length, 1U);
  EXPECT_EQ(list.losses[1].action, "A");
}

TEST(Losses, HaveThePlaceOfTheirNode) {
  const std::string document =
      Document("<ResultAction ID=\"A\">\r\n <Comments>\xE9</Comments> <X/></ResultAction>");
  std::string utf16 = "\xFE\xFF";
  for (const char c : document.substr(document.find('\n'))) utf16.append(1, '\0').append(1, c);
  const std::size_t line_begin = document.rfind('\n', document.find("<X/>")) + 1;
  for (const std::string& bytes : {document, utf16}) {
    const std::vector<TLoss> losses = LossesOf(bytes);
    ASSERT_EQ(losses.size(), 1U);
    EXPECT_EQ(losses[0].line, 1 + std::ranges::count(document.substr(0, line_begin), '\n'));
    EXPECT_EQ(losses[0].column, document.find("<X/>") + 2 - line_begin);
  }
}

TEST(Losses, OfXmlAreNoneOfALegacyFile) {
  TLossList list;
  TZanfoFile file;
  file.SetObserver(&list);
  ASSERT_EQ(test::LoadBytes(With("goto", "comp", "x"), file), Status::kOk);
  test::SaveToLegacy(file);
  EXPECT_TRUE(list.losses.empty());
}

TEST(Losses, OfTheSamplesAndTheirDocumentsAreFew) {
  for (const auto& entry : std::filesystem::directory_iterator(ZAF2XML_SAMPLES)) {
    const std::string extension = entry.path().extension().string();
    if (extension != ".zaf" && extension != ".zcf") continue;
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    for (const TLoss& loss : LossesOf(bytes))
      EXPECT_EQ(loss.code, LossCode::kLineEndChanged) << entry.path() << ": " << loss.GetText();
    // The element of a check box is written under another name than it is read from.
    for (const TLoss& loss : LossesOf(test::ToXml(bytes)))
      EXPECT_NE(loss.GetText().find("InputCheckBox"), std::string::npos)
          << entry.path() << ": " << loss.line << ": " << loss.GetText();
  }
}

}  // namespace
}  // namespace zaf
