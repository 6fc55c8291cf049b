// Conditions, loops, jumps, assignments, mail, files, scripts, Java and external calls.

#include <gtest/gtest.h>
#include <string>

#include "actions/services/TExternalQuerySpecification.h"
#include "actions/services/TScriptSpecification.h"
#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"
#include "tests/support/NamedChanges.h"

namespace zaf {
namespace {

using test::BigEndian;
using test::Compact;
using test::DocumentWith;
using test::ElementOf;
using test::Expected;
using test::LegacyFile;
using test::ListOf;
using test::Slot;
using test::Slots;
using test::TLoadedFile;
using test::ToXml;

std::string AssignItem(std::string_view value, std::string_view name, std::string_view scope,
                       std::string_view expiry = {}, std::string_view path = {},
                       std::string_view domain = {}, std::uint32_t secure = 0) {
  return BigEndian(static_cast<std::uint32_t>(value.size())) + std::string(value) +
         Slot(name, 256) + Slots(128, {scope, expiry}) + Slots(256, {path, domain}) +
         BigEndian(secure);
}

std::string Parameters(std::string_view target) {
  return std::string(target) + '\0' + BigEndian(2) + std::string("n1\0v1\0\0v2\0", 10);
}

TEST(FlowActions, AreWrittenAndReadBack) {
  LegacyFile file;
  file.Action("cntr", "Root");
  const auto add = [&](std::string_view type, std::string_view name) -> LegacyFile& {
    return file.Action(type, name, "Root");
  };
  add("if  ", "If cuts its operator").Text("ifex", "a<b");
  file.Payload("ieei",
               ListOf(2, Slots(128, {"", "l", "equals", "r"}) + Slots(128, {"and", "", "", ""})));
  add("whil", "While").Payload("weit", ListOf(1, Slots(128, {"", "l", "equals", "r"})));
  add("forl", "For").Text("lsta", "1").Text("lend", "9").Text("linc", "2").Text("lvar", "i");
  file.Number("lsgn", 0).Number("push", 1);
  add("brek", "Break").Text("llbl", "outer");
  add("bran", "Branch").Number("iret", 0x80000000).Text("snam", "B");
  file.Text("dnam", "<@APPFILEPATH>/x.zaf<@appfilepath>/");
  add("mail", "Mail has defaults").Text("cc  ", "c").Text("chdr", "h");
  add("aevt", "Command").Number("plat", 0x61657678).Payload("aevx", Parameters("ls"));
  add("aevt", "Event ends early").Payload("aevt", "core");
  add("adll", "Library").Payload("exev", Parameters("lib") + "rest");
  add("flvt", "File reads all by default").Text("flnm", "f").Payload("flmd", "r");
  add("flvt", "File mode is a number").Number("flmd", 'e').Text("acsg", "data");
  file.Text("fnvr", "v").Text("mctp", "TEXT");
  add("scrp", "Script").Number("flav", 0x7065726C).Number("blok", 2).Text("scrp", "go()");
  file.Text("scop", "DeFault");
  add("jvvt", "Java").Number("type", 0x6265616E).Text("name", "C").Text("port", "80");
  file.Payload("argu", ListOf(1, "x"));
  const std::string document = ToXml(file.Bytes());
  EXPECT_EQ(document, Expected("flow"));
  EXPECT_EQ(ToXml(document), document);
}

TEST(FlowActions, AreWrittenAndReadBackChanged) {
  LegacyFile file;
  file.Action("cntr", "Root").Action("brtr", "Jump", "Root").Text("goto", "B").Text("comp", "x");
  file.Action("asgn", "Assign", "Root")
      .Payload("agit", ListOf(3, AssignItem("a", "x", "user") + AssignItem("1", "y", "DEFAULT") +
                                     AssignItem("", "z", "COOKIE", "30", "/", "d", 7)));
  const std::string document = ToXml(file.Bytes());
  EXPECT_EQ(document, Expected("assign"));
  EXPECT_EQ(ToXml(document), Expected("assign-again"));
}

TEST(FlowActions, EqualWhatIsReadFromTheirDocuments) {
  for (const std::string& bytes : {LegacyFile().Action("null", "A").Text("cmnt", "c").Bytes(),
                                   LegacyFile().Action("flvt", "A").Payload("flmd", "r").Bytes(),
                                   DocumentWith("<FileAction ID='A'/>", "")}) {
    const TLoadedFile file(bytes), again(ToXml(bytes));
    EXPECT_TRUE(file.IsEqual(again) && again.IsEqual(file));
  }
}

TEST(AssignSpecification, SectionIsBoundedByTheFileAndKeepsWhatWasRead) {
  const std::string items = ListOf(2, AssignItem("v", "a", "s") + BigEndian(0xFFFFFFFF));
  TZanfoFile file;
  EXPECT_EQ(test::LoadBytes(LegacyFile().Action("asgn", "A").Payload("agit", items).Bytes(), file),
            Status::kFailure);
  // A section is read even if its length is 0.
  std::string bytes = LegacyFile()
                          .Action("asgn", "A")
                          .Payload("agit", ListOf(1, AssignItem("v\rw", "a", "s")))
                          .Bytes();
  bytes.replace(bytes.find("agit") + 8, 4, BigEndian(0));
  EXPECT_NE(ToXml(bytes).find("<Value><![CDATA[v\r\nw]]></Value>"), std::string::npos);
}

TEST(IfSpecification, WritingCutsTheStoredOperatorsToo) {
  const std::string list = ListOf(1, Slots(128, {"", "l", "equals", "r"}));
  LegacyFile legacy;
  legacy.Action("if  ", "A").Payload("ieei", list).Action("elif", "B").Payload("ieei", list);
  TLoadedFile file(legacy.Action("whil", "C").Payload("weit", list).Bytes());
  const auto count = [&](std::string_view part) {
    return test::Count(test::SaveToLegacy(file), part);
  };
  EXPECT_EQ(count(list), 3U);
  static_cast<void>(test::SaveToXml(file));
  EXPECT_EQ(count(list), 1U);
  EXPECT_EQ(count(ListOf(1, Slots(128, {"", "l", "equa", "r"}))), 2U);
}

#define LIST(CONTENT) "<VariableList><VariableItem>" CONTENT "</VariableItem></VariableList>"

/// Elements, and two contents that differ in one field without a section of its own.
constexpr const char* kDifferences[][3] = {
    {"MailAction", "<ParameterList><ParameterItem>a</ParameterItem></ParameterList>", ""},
    {"CommandLineAction", LIST(""), ""},
    {"CommandLineAction", LIST("<Name>a</Name>"), LIST("")},
    {"CommandLineAction", LIST("<Value>a</Value>"), LIST("")},
    {"AppleEventAction", "<Target>a</Target>", ""},
    {"AppleEventAction", "<EventClass>core</EventClass>", ""},
    {"AppleEventAction", "<EventCode>core</EventCode>", ""},
    {"AssignAction", "<AssignItem/>", ""},
    {"AssignAction", "<AssignItem><Name>a</Name></AssignItem>", "<AssignItem/>"},
    {"AssignAction", "<AssignItem><Value>a</Value></AssignItem>", "<AssignItem/>"},
    {"AssignAction", "<AssignItem><Scope>a</Scope></AssignItem>", "<AssignItem/>"},
    {"AssignAction", "<Cookie><Expiry>1</Expiry></Cookie>", "<Cookie/>"},
    {"AssignAction", "<Cookie><Path>/</Path></Cookie>", "<Cookie/>"},
    {"AssignAction", "<Cookie><Domain>d</Domain></Cookie>", "<Cookie/>"},
    {"AssignAction", "<Cookie Secure='True'/>", "<Cookie/>"},
};

TEST(FieldsWithoutASection, CountInTheComparison) {
  for (const auto& [name, content, other_content] : kDifferences) {
    const auto document = [&, name = std::string(name)](const char* fields) {
      // With an output of its own an assign action does not make one from its items.
      return DocumentWith("<" + name + "><ResultsOutput Ref='x'/>" + fields + "</" + name + ">", "",
                          "", "<Output ID='x'>r</Output>");
    };
    const TLoadedFile file(document(content)), other(document(other_content));
    EXPECT_FALSE(file.IsEqual(other)) << name << content;
  }
}

TEST(Refusals, HaveTheirTexts) {
  const std::string list =
      "<VariableList><VariableItem/><VariableItem><Value>v</Value></VariableItem></VariableList>";
  const TLoadedFile file(DocumentWith("<CommandLineAction>" + list +
                                          "</CommandLineAction><AppleEventAction>" + list +
                                          "</AppleEventAction><ScriptAction Type='VBScript'/>"
                                          "<ScriptAction/>",
                                      ""));
  const TActionEntry* const command = file.GetApplication().actions.GetRoot()->first_child;
  const TActionEntry* const event = command->next_sibling;
  const TActionEntry* const script = event->next_sibling;
  const auto check = [](const TActionEntry* entry, ScriptEngine engine = ScriptEngine::kMissing) {
    CText error;
    const auto* const external =
        dynamic_cast<const TExternalQuerySpecification*>(entry->action.get());
    const Status status =
        external != nullptr
            ? external->CheckEnvironment(error)
            : static_cast<const TScriptSpecification&>(*entry->action).CheckEngine(engine, error);
    EXPECT_EQ(status, error.IsEmpty() ? Status::kOk : Status::kFailure);
    return std::string(error.View());
  };
  EXPECT_EQ(check(command), "External action environment variable has value but no name");
  EXPECT_EQ(check(event), "");
  EXPECT_EQ(check(script), "");
  EXPECT_EQ(check(script->next_sibling, ScriptEngine::kPresent), "");
  EXPECT_EQ(check(script->next_sibling), "Javascript is not available");
}

TEST(ConditionLists, SlicesOverlapWhenTheCountIsTooGreat) {
  const auto lefts = [](std::uint32_t count, std::string_view records) {
    const std::string document =
        ToXml(LegacyFile().Action("if  ", "A").Payload("ieei", ListOf(count, records)).Bytes());
    std::string found;
    for (std::size_t at = 0; (at = document.find("<ExpLeft>", at)) != std::string::npos; ++at)
      found += document.substr(at + 9, document.find('<', at + 1) - at - 9) + ",";
    return found;
  };
  EXPECT_EQ(lefts(0, Slots(128, {"", "a", "", ""})), "");
  EXPECT_EQ(lefts(2, Slots(128, {"x", "a", "", "", "y", "b", "", ""})), "a,b,");
  EXPECT_EQ(lefts(2, Slots(128, {"x", "a"}) + Slots(128, {"b", "c"})), "a,c,");
  EXPECT_EQ(lefts(3, Slot("x", 128) + "a"), "a,");
}

TEST(ProgramTree, BranchesStandBesideTheirIf) {
  LegacyFile legacy;
  legacy.Action("cntr", "R").Action("if  ", "I", "R").Action("null", "a", "I");
  legacy.Action("elif", "E", "I").Action("null", "b", "E").Action("else", "L", "E");
  legacy.Action("null", "c", "L").Action("else", "M", "R").Action("null", "d", "R");
  const std::string document = ToXml(legacy.Bytes());
  EXPECT_EQ(Compact(ElementOf(document, "Program")),
            R"(<Program><ActionRef Ref="I"><ActionRef Ref="a"/></ActionRef><ActionRef Ref="E">)"
            R"(<ActionRef Ref="b"/></ActionRef><ActionRef Ref="L"><ActionRef Ref="c"/></ActionRef>)"
            R"(<ActionRef Ref="M"/><ActionRef Ref="d"/></Program>)");
  const TLoadedFile from_document(document);
  const TActionEntry* root = from_document.GetApplication().actions.GetRoot();
  EXPECT_EQ(root->first_child->last_child->action->GetName().View(), "E");
  EXPECT_EQ(root->first_child->last_child->last_child->action->GetName().View(), "L");
  EXPECT_EQ(ToXml(document), document);
}

}  // namespace
}  // namespace zaf
