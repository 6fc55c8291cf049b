// Loads hostile files, each with its expected status or element, within about a second.

#include <chrono>
#include <gtest/gtest.h>
#include <string>

#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

using test::BigEndian;
using test::DocumentWith;
using test::LegacyFile;
using test::ListOf;

constexpr std::uint32_t kHuge = 0xFFFFFFFF;
#ifdef ZAF2XML_SANITIZED
constexpr std::size_t kDeep = 50'000;  // Not more, since growing arrays are copied each time.
constexpr std::chrono::seconds kLongest{60};
#else
constexpr std::size_t kDeep = 200'000;
constexpr std::chrono::seconds kLongest{5};
#endif
constexpr char kMalformed[] = "status 0xFE02";
constexpr char kFailure[] = "status 0xFFFF";

/// The file with the last map entry of this code changed.
std::string WithEntry(std::string bytes, std::string_view code, std::uint32_t offset,
                      std::uint32_t length) {
  return bytes.replace(bytes.rfind(code) + 4, 8, BigEndian(offset) + BigEndian(length));
}

LegacyFile Commented() { return LegacyFile().Action("null", "A").Text("cmnt", "c"); }

std::string WithList(std::string_view type, std::string_view code, std::string_view payload) {
  return LegacyFile().Action(type, "A").Payload(code, payload).Bytes();
}

std::string Repeat(std::string_view text, std::size_t count) {
  std::string repeated;
  while (count-- > 0) repeated += text;
  return repeated;
}

std::string DeepProgram(std::string_view element) {
  const std::string name(element);
  return DocumentWith(Repeat("<" + name + " ID='A'/>", kDeep),
                      Repeat("<ActionRef Ref='A'>", kDeep) + Repeat("</ActionRef>", kDeep));
}

std::string Document(std::string_view type, std::string_view comments) {
  return "<?xml version='1.0'?><!DOCTYPE ZAF " + std::string(type) + "><ZAF><Comments>" +
         std::string(comments) + "</Comments></ZAF>";
}

/// The outcome of a file with one action that has these comments.
std::string ActionWith(std::string_view comments) {
  return "<Actions><ResultAction ID=\"A\" Sig=\"457c797f\"><Comments>" + std::string(comments) +
         "</Comments></ResultAction></Actions>";
}

struct HostileCase {
  std::string name;
  std::string bytes;
  std::string outcome;            ///< A status, or the element.
  std::string_view element = {};  ///< The element of the document to compare.
};

class HostileFile : public testing::TestWithParam<HostileCase> {};

TEST_P(HostileFile, HasItsOutcomeSoon) {
  const auto begin = std::chrono::steady_clock::now();
  const std::string result = test::ToXml(GetParam().bytes);
  const bool is_document = result.starts_with("<?xml");
  EXPECT_EQ(is_document ? test::Compact(test::ElementOf(result, GetParam().element)) : result,
            GetParam().outcome);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, kLongest);
}

/// Every list with impossible counts and sizes.
std::vector<HostileCase> Lists() {
  constexpr std::string_view kLists[] = {
      "srch tabl", "srch cols", "srch slct", "srch ordr", "srch grup", "srch crit",
      "srch have", "srch join", "insr valu", "sgrp scit", "sgrp lcit", "sgrp dcit",
      "sgrp sfvt", "sgrp dfvt", "sgrp lsrt", "sgrp dltj", "igrp icol", "igrp fval",
      "jvvt argu", "flvt vbls", "if   ieei", "whil weit", "asgn agit"};
  std::vector<HostileCase> cases;
  for (const std::string_view list : kLists) {
    const std::string_view type = list.substr(0, 4);
    const std::string code(list.substr(5));
    // The items of an assign action extend to the end of the file.
    const char* const outcome = code == "agit" ? kFailure : kMalformed;
    cases.push_back({"ManyOf_" + code, WithList(type, code, ListOf(kHuge, "abcd")), outcome});
    cases.push_back({"CountCutOf_" + code, WithList(type, code, {"\0\0\1", 3}), outcome});
  }
  return cases;
}

const auto kName = [](const testing::TestParamInfo<HostileCase>& test) { return test.param.name; };
INSTANTIATE_TEST_SUITE_P(
    Sections, HostileFile,
    testing::Values(
        HostileCase{
            "SectionsOverlap", WithEntry(Commented().Text("rslt", "r").Bytes(), "rslt", 96, 2),
            "<Outputs><Output ID=\"A.Results\" Type=\"HTML\">c</Output></Outputs>", "Outputs"},
        HostileCase{"SectionIsTheHeaderOfTheFile", WithEntry(Commented().Bytes(), "cmnt", 4, 4),
                    ActionWith("appl"), "Actions"},
        HostileCase{"SectionIsItsOwnMap", WithEntry(Commented().Bytes(), "cmnt", 98, 4),
                    ActionWith("cmnt"), "Actions"},
        HostileCase{"ActionIsTheFileItself",
                    WithEntry(LegacyFile().Payload("head", "").Bytes(), "head", 0, 0),
                    "<Program><ActionRef Ref=\"\"/></Program>", "Program"},
        HostileCase{"ActionIsItsOwnSection", WithEntry(Commented().Bytes(), "cmnt", 48 + 16, 1),
                    ActionWith("A"), "Actions"},
        HostileCase{"SizeZero", Commented().Payload("cmnt", "").Bytes(),
                    "<Actions><ResultAction ID=\"A\" Sig=\"457c797f\"/></Actions>", "Actions"},
        HostileCase{"SizeMinusOne", WithEntry(Commented().Bytes(), "cmnt", 96, kHuge), kFailure},
        HostileCase{"SizeOneTooMuch", WithEntry(Commented().Bytes(), "cmnt", 96, 27), kFailure},
        HostileCase{"OffsetMinusOne", WithEntry(Commented().Bytes(), "cmnt", kHuge, 0), kFailure},
        HostileCase{"OffsetAndSizeWrapAround",
                    WithEntry(Commented().Bytes(), "cmnt", 96, kHuge - 95), kFailure},
        HostileCase{
            "NumberCut",
            WithEntry(LegacyFile().Action("null", "A").Number("push", 1).Bytes(), "push", 121, 4),
            kFailure},
        HostileCase{"MapOfAnActionIsThatOfTheFile", Commented().SetNumber(48 + 8, 110).Bytes(),
                    "<Program><ActionRef Ref=\"A\"/></Program>", "Program"},
        HostileCase{"RunOnlyButNotScrambled",
                    LegacyFile().Action("null", "A").SetNumber(4, 0x72646F63).Bytes(), "<Actions/>",
                    "Actions"},
        HostileCase{"LoginBlockCut", LegacyFile().Text("user", "ZC1:6453d41f3e59b5").Bytes(),
                    "<UserName>ZC1:6453d41f3e59b5</UserName>", "UserName"},
        HostileCase{"LoginOfNoBlock", LegacyFile().Text("user", "ZC1:").Bytes(),
                    "<UserName>ZC1:</UserName>", "UserName"}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    Parents, HostileFile,
    testing::Values(
        HostileCase{
            "ParentsInACircle",
            LegacyFile()
                .Action("null", "A", "B")
                .Action("null", "B", "A")
                .Action("null", "A", "B")
                .Bytes(),
            R"(<Program><ActionRef Ref="A"><ActionRef Ref="B"><ActionRef Ref="A"/></ActionRef></ActionRef></Program>)",
            "Program"},
        HostileCase{"ParentStandsBehind",
                    LegacyFile()
                        .Action("cntr", "R")
                        .Action("null", "A", "B")
                        .Action("null", "B", "R")
                        .Bytes(),
                    kMalformed},
        HostileCase{"RootUnderItsChild",
                    LegacyFile().Action("cntr", "R", "A").Action("null", "A", "R").Bytes(),
                    "<Program><ActionRef Ref=\"A\"/></Program>", "Program"}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    Documents, HostileFile,
    testing::Values(
        HostileCase{"EntityBomb",
                    Document("[<!ENTITY a 'aaaaaaaaaa'><!ENTITY b "
                             "'&a;&a;&a;&a;&a;&a;&a;&a;'><!ENTITY c '&b;&b;&b;&b;'>]",
                             "&c;"),
                    kMalformed},
        HostileCase{"ExternalEntity", Document("[<!ENTITY x SYSTEM 'file:///etc/passwd'>]", "&x;"),
                    kMalformed},
        HostileCase{"ExternalDocumentType",
                    Document("PUBLIC 'p' 'http://127.0.0.1:9/x.dtd'", "&c;"),
                    "<Comments><![CDATA[&c;]]></Comments>", "Comments"},
        HostileCase{"ReferencesToNowhere",
                    DocumentWith("<SearchAction ID='A' DSID='x' DeploymentDSID='y'><ResultsOutput "
                                 "Ref='z'/></SearchAction>",
                                 ""),
                    "<Outputs/>", "Outputs"},
        HostileCase{"UnknownElementsDeep",
                    DocumentWith("<ResultAction ID='A'>" + Repeat("<x>", kDeep) +
                                     Repeat("</x>", kDeep) + "</ResultAction>",
                                 ""),
                    "<Program><ActionRef Ref=\"A\"/></Program>", "Program"},
        HostileCase{"ReferencesDeep", DeepProgram("GroupAction"), "<DataSources/>", "DataSources"},
        HostileCase{"ElseIfsDeep", DeepProgram("ElseIfAction"), "<DataSources/>", "DataSources"},
        HostileCase{"DataSourceOfManyElementsShared",
                    DocumentWith(Repeat("<DirectDBMSAction DSID='x'/>", kDeep / 4), "",
                                 "<DataSource ID='x'>" + Repeat("<x/>", kDeep) + "</DataSource>"),
                    "<DSN/>", "DSN"},
        HostileCase{
            "OutputOfManyPiecesShared",
            DocumentWith(Repeat("<IfAction><ResultsOutput Ref='x'/></IfAction>", kDeep / 4), "", "",
                         "<Output ID='x'>" + Repeat("<![CDATA[]]>", kDeep) + "</Output>"),
            "<Outputs/>", "Outputs"},
        HostileCase{"ReferencesDeepWithoutActions",
                    DocumentWith("<GroupAction ID='A'/>", Repeat("<ActionRef Ref='A'>", kDeep) +
                                                              Repeat("</ActionRef>", kDeep)),
                    kMalformed}),
    kName);

INSTANTIATE_TEST_SUITE_P(Lists, HostileFile, testing::ValuesIn(Lists()), kName);

TEST(HostileDocument, NameOfAParentIsNotCopiedForEachChild) {
  const test::TLoadedFile file(DocumentWith("<IfAction ID='A'/><IfAction ID='B'/>",
                                            "<ActionRef Ref='A'><ActionRef Ref='B'/></ActionRef>"));
  const TActionEntry& parent = *file.GetApplication().actions.GetRoot()->first_child;
  EXPECT_EQ(&parent.first_child->action->GetParentName(), &parent.action->GetName());
}

TEST(ProtectedDocument, CutAnywhereIsRefused) {
  test::TLoadedFile file(LegacyFile("rdoc").Action("null", "A").Bytes());
  const std::string saved = test::SaveToXml(file, Protection::kProtected);
  for (std::size_t size = saved.find('\n') + 1; size < saved.size(); ++size)
    EXPECT_EQ(test::ToXml(saved.substr(0, size)), kMalformed) << size;
}

}  // namespace
}  // namespace zaf
