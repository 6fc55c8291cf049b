// Conditions, loops, jumps, assignments, mail, files, scripts, Java and external calls.

#include <gtest/gtest.h>
#include <string>

#include "actions/services/TExternalQuerySpecification.h"
#include "actions/services/TScriptSpecification.h"
#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

using test::BigEndian;
using test::Compact;
using test::DocumentWith;
using test::ElementOf;
using test::LegacyFile;
using test::ListOf;
using test::Slot;
using test::Slots;
using test::ToXml;

/// The content of an element behind the signature of its start tag.
std::string Content(const std::string& document, std::string_view element) {
  const std::string compact = Compact(ElementOf(document, element));
  const std::size_t signature = compact.find(" Sig=\"");
  std::string content = compact;
  return signature == std::string::npos ? content : content.erase(signature, 15);
}

struct ActionCase {
  const char* name;
  LegacyFile file;
  const char* element;
  std::string xml;
  std::string xml_again = xml;  ///< The same read from XML and written again.
};

class FlowAction : public testing::TestWithParam<ActionCase> {};

TEST_P(FlowAction, IsWrittenAndReadBack) {
  const ActionCase& test = GetParam();
  const std::string document = ToXml(test.file.Bytes());
  EXPECT_EQ(Content(document, test.element), test.xml);
  EXPECT_EQ(Content(ToXml(document), test.element), test.xml_again);
}

std::string AssignItem(std::string_view value, std::string_view name, std::string_view scope,
                       std::string_view expiry = {}, std::string_view path = {},
                       std::string_view domain = {}, std::uint32_t secure = 0) {
  return BigEndian(static_cast<std::uint32_t>(value.size())) + std::string(value) +
         Slot(name, 256) + Slots(128, {scope, expiry}) + Slots(256, {path, domain}) +
         BigEndian(secure);
}

/// The element of three items; one read from XML has a scope where there was the default one, and
/// results.
std::string AssignElement(const std::string& scope, const std::string& results) {
  return "<AssignAction ID=\"A\"><AssignItem><Name>x</Name><Value>a</Value><Scope>user</Scope>"
         "</AssignItem><AssignItem><Name>y</Name><Value>1</Value>" +
         scope +
         "</AssignItem><Cookie Secure=\"True\"><Name>z</Name><Value/><Expiry>30</Expiry>"
         "<Path>/</Path><Domain>d</Domain></Cookie>" +
         results + "</AssignAction>";
}

std::string Parameters(std::string_view begin, std::string_view target) {
  return std::string(begin) + std::string(target) + '\0' + BigEndian(2) +
         std::string("n1\0v1\0\0v2\0", 10);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, FlowAction,
    testing::Values(
        ActionCase{"IfCutsItsOperator",
                   LegacyFile()
                       .Action("if  ", "A")
                       .Text("ifex", "a<b")
                       .Payload("ieei", ListOf(2, Slots(128, {"", "l", "equals", "r"}) +
                                                      Slots(128, {"and", "", "", ""}))),
                   "IfAction",
                   R"(<IfAction ID="A"><Expression><![CDATA[a<b]]></Expression><ExpressionInfo>)"
                   R"(<ExpLeft>l</ExpLeft><ExpRight>r</ExpRight><Operator>equa</Operator>)"
                   R"(</ExpressionInfo><ExpressionInfo><ExpLeft/><ExpRight/>)"
                   R"(<Conjunction>and</Conjunction><Operator/></ExpressionInfo></IfAction>)"},
        ActionCase{"WhileWritesAttributes",
                   LegacyFile()
                       .Action("whil", "A")
                       .Payload("weit", ListOf(1, Slots(128, {"", "l", "equals", "r"}))),
                   "WhileAction",
                   R"(<WhileAction ID="A"><ExpressionInfo Conjunction="" Operator="equals">)"
                   R"(<ExpLeft>l</ExpLeft><ExpRight>r</ExpRight></ExpressionInfo></WhileAction>)"},
        ActionCase{"ForWritesItsDirectionLast",
                   LegacyFile()
                       .Action("forl", "A")
                       .Text("lsta", "1")
                       .Text("lend", "9")
                       .Text("linc", "2")
                       .Text("lvar", "i")
                       .Number("lsgn", 0)
                       .Number("push", 1),
                   "ForAction",
                   R"(<ForAction ID="A" PushResults="True" Direction="Down"><Start>1</Start>)"
                   R"(<Stop>9</Stop><Increment>2</Increment><LoopVariable>i</LoopVariable>)"
                   R"(</ForAction>)"},
        ActionCase{"BreakNamesItsLoop", LegacyFile().Action("brek", "A").Text("llbl", "outer"),
                   "BreakAction", R"(<BreakAction LoopLabel="outer" ID="A"/>)"},
        ActionCase{"BranchCleansItsPath",
                   LegacyFile()
                       .Action("bran", "A")
                       .Number("iret", 0x80000000)
                       .Text("snam", "B")
                       .Text("dnam", "<@APPFILEPATH>/x.zaf<@appfilepath>/"),
                   "BranchAction",
                   R"(<BranchAction IsReturn="True" ID="A"><ActionName>B</ActionName>)"
                   R"(<DocumentName><![CDATA[<@APPFILEPATH>x.zaf<@appfilepath>/]]></DocumentName>)"
                   R"(</BranchAction>)"},
        ActionCase{"JumpIsWrittenAsResults",
                   LegacyFile().Action("brtr", "A").Text("goto", "B").Text("comp", "x"),
                   "ResultAction", R"(<ResultAction ID="A"/>)"},
        ActionCase{
            "AssignTellsCookiesFromVariables",
            LegacyFile()
                .Action("asgn", "A")
                .Payload("agit",
                         ListOf(3, AssignItem("a", "x", "user") + AssignItem("1", "y", "DEFAULT") +
                                       AssignItem("", "z", "COOKIE", "30", "/", "d", 7))),
            "AssignAction", AssignElement("", ""),
            AssignElement("<Scope/>", "<ResultsOutput Ref=\"A.Results\"/>")},
        ActionCase{"MailHasItsDefaults",
                   LegacyFile().Action("mail", "A").Text("cc  ", "c").Text("chdr", "h"),
                   "MailAction",
                   R"(<MailAction ID="A"><Server/><Port/><From/><To/><CC>c</CC><BCC/><Subject/>)"
                   R"(<Body/><ContentType>text/plain</ContentType>)"
                   R"(<CharacterSet>iso-8859-1</CharacterSet><Wrap/>)"
                   R"(<CustomHeader>h</CustomHeader><ParameterList/></MailAction>)"},
        ActionCase{"CommandHasVariables",
                   LegacyFile()
                       .Action("aevt", "A")
                       .Number("plat", 0x61657678)
                       .Payload("aevx", Parameters("", "ls")),
                   "CommandLineAction",
                   R"(<CommandLineAction ID="A"><Command>ls</Command><VariableList>)"
                   R"(<VariableItem><Name>n1</Name><Value>v1</Value></VariableItem>)"
                   R"(<VariableItem><Name/><Value>v2</Value></VariableItem></VariableList>)"
                   R"(</CommandLineAction>)"},
        ActionCase{"EventThatEndsEarlyKeepsWhatIsWhole",
                   LegacyFile().Action("aevt", "A").Payload("aevt", "core"), "AppleEventAction",
                   R"(<AppleEventAction ID="A"><Target/><EventClass>core</EventClass>)"
                   R"(<EventCode>????</EventCode><VariableList/></AppleEventAction>)"},
        ActionCase{"LibraryHasParameters",
                   LegacyFile().Action("adll", "A").Payload("exev", Parameters("", "lib") + "rest"),
                   "ExternalDLLAction",
                   R"(<ExternalDLLAction ID="A"><Target>lib</Target><ParameterList>)"
                   R"(<ParameterItem>v1</ParameterItem><ParameterItem>v2</ParameterItem>)"
                   R"(</ParameterList></ExternalDLLAction>)"},
        ActionCase{"FileReadsAllOfItByDefault",
                   LegacyFile().Action("flvt", "A").Text("flnm", "f").Payload("flmd", "r"),
                   "FileAction",
                   R"(<FileAction ID="A"><ReadFile><Name>f</Name><Range>%0.$</Range><Variable/>)"
                   R"(</ReadFile></FileAction>)"},
        ActionCase{"FileModeMayBeANumber",
                   LegacyFile()
                       .Action("flvt", "A")
                       .Number("flmd", 'e')
                       .Text("acsg", "data")
                       .Text("fnvr", "v")
                       .Text("mctp", "TEXT"),
                   "FileAction",
                   R"(<FileAction ID="A"><WriteFile FileExistsRule="Error"><Name/>)"
                   R"(<Data>data</Data><MacFileType>TEXT</MacFileType><MacFileCreator/>)"
                   R"(<FilenameVariable>v</FilenameVariable></WriteFile></FileAction>)"},
        ActionCase{"ScriptOfAnotherLanguage",
                   LegacyFile()
                       .Action("scrp", "A")
                       .Number("flav", 0x7065726C)
                       .Number("blok", 2)
                       .Text("scrp", "go()")
                       .Text("scop", "DeFault"),
                   "ScriptAction",
                   R"(<ScriptAction Type="perl" Block="True" ID="A"><Script>go()</Script><Scope/>)"
                   R"(</ScriptAction>)"},
        ActionCase{"JavaBean",
                   LegacyFile()
                       .Action("jvvt", "A")
                       .Number("type", 0x6265616E)
                       .Text("name", "C")
                       .Text("port", "80")
                       .Payload("argu", ListOf(1, "x")),
                   "JavaAction",
                   R"(<JavaAction Type="Bean" ID="A"><Class>C</Class><JavaServer/>)"
                   R"(<JavaServerPort>80</JavaServerPort><ParameterList>)"
                   R"(<ParameterItem>x</ParameterItem></ParameterList></JavaAction>)"}),
    [](const testing::TestParamInfo<ActionCase>& test_case) { return test_case.param.name; });

struct ReadCase {
  const char* name;
  const char* action;
  const char* element;
  const char* xml;
};

class FlowActionFromXml : public testing::TestWithParam<ReadCase> {};

TEST_P(FlowActionFromXml, IsReadByItsRules) {
  const std::string document = ToXml(DocumentWith(GetParam().action, ""));
  EXPECT_EQ(*GetParam().element == '\0' ? document : Content(document, GetParam().element),
            GetParam().xml);
}

INSTANTIATE_TEST_SUITE_P(
    Words, FlowActionFromXml,
    testing::Values(
        ReadCase{"DirectionMissing", "<ForAction ID='A'/>", "ForAction",
                 "<ForAction ID=\"A\" Direction=\"Up\"><Start/><Stop/><Increment/><LoopVariable/>"
                 "</ForAction>"},
        ReadCase{"DirectionUnknown", "<ForAction ID='A' Direction='up'/>", "", "status 0xFE02"},
        ReadCase{"ReturnInLowerCase", "<BranchAction ID='A' IsReturn='true'/>", "BranchAction",
                 "<BranchAction ID=\"A\"><ActionName/></BranchAction>"},
        ReadCase{"ScriptTypeMissing", "<ScriptAction ID='A'/>", "ScriptAction",
                 "<ScriptAction Type=\"JavaScript\" ID=\"A\"><Script/><Scope/></ScriptAction>"},
        ReadCase{"ScriptTypeEmpty", "<ScriptAction ID='A' Type=''/>", "ScriptAction",
                 "<ScriptAction Type=\"\" ID=\"A\"><Script/><Scope/></ScriptAction>"},
        ReadCase{"MailDefaultsAreCleared", "<MailAction ID='A'/>", "ContentType", "<ContentType/>"},
        ReadCase{"FileRuleUnknown",
                 "<FileAction ID='A'><WriteFile FileExistsRule='x'/></FileAction>", "WriteFile",
                 "<WriteFile FileExistsRule=\"Overwrite\"><Name/><Data/><MacFileType/>"
                 "<MacFileCreator/><FilenameVariable/></WriteFile>"},
        ReadCase{"FileDeletesFirst",
                 "<FileAction><ReadFile/><DeleteFile><Name>f</Name></DeleteFile>"
                 "</FileAction>",
                 "DeleteFile", "<DeleteFile><Name>f</Name></DeleteFile>"},
        ReadCase{"EventMissing",
                 "<AppleEventAction><EventClass>longer</EventClass>"
                 "<Command>c</Command></AppleEventAction>",
                 "AppleEventAction",
                 "<AppleEventAction ID=\"\"><Target>c</Target><EventClass>long</EventClass>"
                 "<EventCode><![CDATA[    ]]></EventCode><VariableList/></AppleEventAction>"}),
    [](const testing::TestParamInfo<ReadCase>& test_case) { return test_case.param.name; });

TEST(FlowActions, EqualWhatIsReadFromTheirDocuments) {
  for (const std::string& bytes : {LegacyFile().Action("null", "A").Text("cmnt", "c").Bytes(),
                                   LegacyFile().Action("flvt", "A").Payload("flmd", "r").Bytes(),
                                   DocumentWith("<FileAction ID='A'/>", "")}) {
    TZanfoFile file;
    TZanfoFile again;
    ASSERT_EQ(test::LoadBytes(bytes, file), Status::kOk);
    ASSERT_EQ(test::LoadBytes(ToXml(bytes), again), Status::kOk);
    EXPECT_TRUE(file.IsEqual(again) && again.IsEqual(file));
  }
}

TEST(AssignSpecification, ResultsAreRebuiltAsServerTags) {
  const std::string document = ToXml(DocumentWith(
      "<AssignAction ID='A'>"
      "<AssignItem><Name>x</Name><Value>a b</Value><Scope>user</Scope></AssignItem>"
      "<AssignItem><Name>q</Name><Value>say \"it's\"</Value><Scope>Default</Scope></AssignItem>"
      "<AssignItem><Value>nameless</Value></AssignItem>"
      "<Cookie Secure='True'><Name>c</Name><Value>\"</Value><Expiry> 30x</Expiry>"
      "<Domain>d</Domain></Cookie>"
      "<Cookie><Name>s</Name></Cookie></AssignAction>",
      ""));
  EXPECT_EQ(ElementOf(document, "Output "), "<Output ID=\"A.Results\" Type=\"HTML\">");
  EXPECT_NE(
      document.find(R"(<![CDATA[<@ASSIGN SCOPE=user NAME=x VALUE="a b"><@ASSIGN q "say ""it's""">)"
                    R"(<@ASSIGN SCOPE=Cookie NAME=c VALUE='"'  EXPIRES="<@TOGMT <@SECSTOTS <@CALC )"
                    R"(EXPR="<@TSTOSECS <@CURRENTTIMESTAMP>>+1800" >> FORMAT=datetime:http>")"
                    R"( DOMAIN="d"  PATH=""  SECURE="yes" >)"
                    R"(<@ASSIGN SCOPE=Cookie NAME=s VALUE=""  PATH=""  SECURE="no" >]]>)"),
      std::string::npos)
      << document;
}

TEST(AssignSpecification, SectionIsBoundedByTheFileAndKeepsWhatWasRead) {
  const std::string items = ListOf(2, AssignItem("v", "a", "s") + BigEndian(0xFFFFFFFF));
  TZanfoFile file;
  EXPECT_EQ(test::LoadBytes(LegacyFile().Action("asgn", "A").Payload("agit", items).Bytes(), file),
            Status::kFailure);
  // A section that claims no length at all is read all the same.
  std::string bytes = LegacyFile()
                          .Action("asgn", "A")
                          .Payload("agit", ListOf(1, AssignItem("v\rw", "a", "s")))
                          .Bytes();
  bytes.replace(bytes.find("agit") + 8, 4, BigEndian(0));
  EXPECT_NE(ToXml(bytes).find("<Value><![CDATA[v\r\nw]]></Value>"), std::string::npos);
}

TEST(IfSpecification, WritingCutsTheStoredOperatorsToo) {
  TZanfoFile file;
  const std::string list = ListOf(1, Slots(128, {"", "l", "equals", "r"}));
  ASSERT_EQ(test::LoadBytes(LegacyFile()
                                .Action("if  ", "A")
                                .Payload("ieei", list)
                                .Action("elif", "B")
                                .Payload("ieei", list)
                                .Action("whil", "C")
                                .Payload("weit", list)
                                .Bytes(),
                            file),
            Status::kOk);
  const auto count = [&](std::string_view part) {
    const std::string legacy = test::SaveToLegacy(file);
    int found = 0;
    for (std::size_t at = 0; (at = legacy.find(part, at)) != std::string::npos; ++at) ++found;
    return found;
  };
  EXPECT_EQ(count(list), 3);
  static_cast<void>(test::SaveToXml(file));
  EXPECT_EQ(count(list), 1);
  EXPECT_EQ(count(ListOf(1, Slots(128, {"", "l", "equa", "r"}))), 2);
}

/// An element, and two contents of it that differ in one field, which has no section of its own.
constexpr const char* kDifferences[] = {
    "MailAction|<ParameterList><ParameterItem>a</ParameterItem></ParameterList>|",
    "CommandLineAction|<VariableList><VariableItem/></VariableList>|",
    "CommandLineAction|<VariableList><VariableItem><Name>a</Name></VariableItem></VariableList>|"
    "<VariableList><VariableItem/></VariableList>",
    "CommandLineAction|<VariableList><VariableItem><Value>a</Value></VariableItem></VariableList>|"
    "<VariableList><VariableItem/></VariableList>",
    "AppleEventAction|<Target>a</Target>|",
    "AppleEventAction|<EventClass>core</EventClass>|",
    "AppleEventAction|<EventCode>core</EventCode>|",
    "AssignAction|<AssignItem/>|",
    "AssignAction|<AssignItem><Name>a</Name></AssignItem>|<AssignItem/>",
    "AssignAction|<AssignItem><Value>a</Value></AssignItem>|<AssignItem/>",
    "AssignAction|<AssignItem><Scope>a</Scope></AssignItem>|<AssignItem/>",
    "AssignAction|<Cookie><Expiry>1</Expiry></Cookie>|<Cookie/>",
    "AssignAction|<Cookie><Path>/</Path></Cookie>|<Cookie/>",
    "AssignAction|<Cookie><Domain>d</Domain></Cookie>|<Cookie/>",
    "AssignAction|<Cookie Secure='True'/>|<Cookie/>",
};

TEST(FieldsWithoutASection, CountInTheComparison) {
  for (const std::string difference : kDifferences) {
    SCOPED_TRACE(difference);
    const std::size_t end = difference.find('|');
    const std::size_t middle = difference.find('|', end + 1);
    const std::string name = difference.substr(0, end);
    const auto load = [&](const std::string& content, TZanfoFile& file) {
      // The results that an assign action gets of its items are the same.
      return test::LoadBytes(
          DocumentWith("<" + name + "><ResultsOutput Ref='x'/>" + content + "</" + name + ">", "",
                       "", "<Output ID='x'>r</Output>"),
          file);
    };
    TZanfoFile one;
    TZanfoFile two;
    ASSERT_EQ(load(difference.substr(end + 1, middle - end - 1), one), Status::kOk);
    ASSERT_EQ(load(difference.substr(middle + 1), two), Status::kOk);
    EXPECT_FALSE(one.IsEqual(two));
  }
}

TEST(Refusals, HaveTheirTexts) {
  const std::string list =
      "<VariableList><VariableItem/><VariableItem><Value>v</Value></VariableItem></VariableList>";
  TZanfoFile file;
  ASSERT_EQ(test::LoadBytes(DocumentWith("<CommandLineAction>" + list +
                                             "</CommandLineAction><AppleEventAction>" + list +
                                             "</AppleEventAction><ScriptAction Type='VBScript'/>"
                                             "<ScriptAction/>",
                                         ""),
                            file),
            Status::kOk);
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
  const std::string legacy = LegacyFile()
                                 .Action("cntr", "R")
                                 .Action("if  ", "I", "R")
                                 .Action("null", "a", "I")
                                 .Action("elif", "E", "I")
                                 .Action("null", "b", "E")
                                 .Action("else", "L", "E")
                                 .Action("null", "c", "L")
                                 .Action("else", "M", "R")
                                 .Action("null", "d", "R")
                                 .Bytes();
  const std::string document = ToXml(legacy);
  EXPECT_EQ(Compact(ElementOf(document, "Program")),
            R"(<Program><ActionRef Ref="I"><ActionRef Ref="a"/></ActionRef><ActionRef Ref="E">)"
            R"(<ActionRef Ref="b"/></ActionRef><ActionRef Ref="L"><ActionRef Ref="c"/></ActionRef>)"
            R"(<ActionRef Ref="M"/><ActionRef Ref="d"/></Program>)");
  TZanfoFile from_legacy;
  TZanfoFile from_document;
  ASSERT_EQ(test::LoadBytes(legacy, from_legacy), Status::kOk);
  ASSERT_EQ(test::LoadBytes(document, from_document), Status::kOk);
  const TActionEntry* root = from_document.GetApplication().actions.GetRoot();
  EXPECT_EQ(root->first_child->last_child->action->GetName().View(), "E");
  EXPECT_EQ(root->first_child->last_child->last_child->action->GetName().View(), "L");
  EXPECT_EQ(ToXml(document), document);
}

}  // namespace
}  // namespace zaf
