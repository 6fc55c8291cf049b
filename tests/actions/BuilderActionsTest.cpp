#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "actions/builders/TInsertGroupSpecification.h"
#include "fields/SectionMap.h"
#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

using test::BigEndian;
using test::Compact;
using test::ElementOf;
using test::LegacyFile;
using test::ListOf;
using test::Slot;
using test::ToXml;
using testing::HasSubstr;

/// Texts in slots of 128 bytes, one behind the other.
std::string Slots(std::initializer_list<std::string_view> texts) {
  std::string slots;
  for (const std::string_view text : texts) slots += Slot(text, 128);
  return slots;
}

/// The head of a column's record, and of its element: everything in front of its options.
std::string Column(std::string_view name) {
  return Slots({"T", name}) + BigEndian(4) + "\1xyz" + BigEndian(0xFFFFFFFF) + Slots({"O", "L"});
}
std::string ColumnXml(const std::string& element, const std::string& name) {
  return "<" + element + "><ColumnName>" + name +
         "</ColumnName><TableName>T</TableName><TableOwner>O</TableOwner><FieldTitle>L</"
         "FieldTitle>";
}
const std::string kColumn = R"(Column DataType="Integer" Length="-1" PrimaryKey="True")";

/// Options of which every field says something.
std::string Input(std::string_view kind, std::uint32_t fixed_kind = 0, std::uint32_t flags = ~0U) {
  return std::string(kind) + Slot("d", 128) + BigEndian(1) + BigEndian(2) + BigEndian(0xFFFFFFFD) +
         BigEndian(flags) + Slot("v", 128) + BigEndian(fixed_kind) + Slot("a <1>", 128) +
         "carried bits";
}
std::string Display(std::uint32_t kind, std::uint32_t format = 0, std::uint32_t breaks = 0) {
  return BigEndian(kind) + BigEndian(format) + BigEndian(breaks) + Slot("a/path", 128) +
         std::string(32, 'c');
}

std::string Item(std::initializer_list<std::string_view> names, std::string_view name,
                 std::uint32_t selected = 0) {
  return Slots(names) + Slots({name, "V"}) + BigEndian(selected);
}

std::string Format(std::string_view border) { return Slots({border, "c", "b", "p", "s"}); }
std::string FormatXml(const std::string& border, const std::string& color = "c",
                      const std::string& rest = "bps") {
  const auto value = [&](std::size_t i) {
    return "=\"" + rest.substr(std::min(i, rest.size()), 1);
  };
  return "<PageFormat Border=\"" + border + "\" BorderColor=\"" + color + "\" BackgroundColor" +
         value(0) + "\" CellPadding" + value(1) + "\" CellSpacing" + value(2) + "\"/>";
}

std::string OrderXml(const std::string& attribute, const std::string& content) {
  return "<OrderColumn" + attribute + ">" + content + "</OrderColumn>";
}

/// A join of column "c" of a table with column "d" of another.
std::string Join(std::string_view one, std::string_view other, const std::string& join_operator) {
  return Slots({"c", one, "d", other}) + join_operator + std::string(132, '\0');
}
std::string JoinXml(const std::string& attributes, const std::string& one, const std::string& two) {
  return "<JoinItem JoinType=" + attributes + "><FirstTable>" + one +
         "</FirstTable><FirstColumn>c</FirstColumn><SecondTable>" + two +
         "</SecondTable><SecondColumn>d</SecondColumn></JoinItem>";
}

/// "name=text name=text ...", cut apart.
std::vector<std::pair<std::string, std::string>> Pairs(const std::string& list) {
  std::vector<std::pair<std::string, std::string>> pairs;
  std::istringstream words(list);
  for (std::string word; words >> word;)
    pairs.emplace_back(word.substr(0, word.find('=')), word.substr(word.find('=') + 1));
  return pairs;
}

LegacyFile& AddTexts(LegacyFile& file, const std::string& texts) {
  for (const auto& [code, text] : Pairs(texts)) file.Text(code, text);
  return file;
}

std::string Children(const std::string& texts) {
  std::string children;
  for (const auto& [name, text] : Pairs(texts))
    children += text.empty() ? "<" + name + "/>" : "<" + name + ">" + text + "</" + name + ">";
  return children;
}

/// The output blocks of the action "A", and references to them.
std::string Outputs(const std::string& blocks) {
  std::string outputs;
  for (const auto& [id, text] : Pairs(blocks))
    outputs += "<Output ID=\"A." + id + "\" Type=\"HTML\">" + text + "</Output>";
  return "<Outputs>" + outputs + "</Outputs>";
}
std::string References(const std::string& blocks) {
  std::string references;
  for (const auto& [name, id] : Pairs(blocks)) references += "<" + name + " Ref=\"A." + id + "\"/>";
  return references;
}

TEST(SearchGroupSpecification, EverythingIsWrittenInOrderAndReadBack) {
  LegacyFile file;
  file.Action("sgrp", "A").Payload("sfvt", ListOf(1, Item({"O", "T", "a"}, "N", 7)));
  file.Payload("scit", ListOf(1, Column("a") + Input("drop") + Slot("<=", 12)));
  file.Payload("lcit", ListOf(1, Column("b") + Display(1)));
  file.Payload("lsrt", ListOf(2, Slots({"O", "T", "b"}) + BigEndian(256) + Slots({"", "T", "a"}) +
                                     BigEndian(0)));
  file.Payload("join", ListOf(1, Join("Emp", "EMP", " =* ")));
  file.Payload("dcit", ListOf(1, Column("d") + Input("radi") + BigEndian(4) + std::string(8, '\0') +
                                     Slot("p", 32) + "rest"));
  file.Payload("dfvt", ListOf(1, Item({"O", "T", "d"}, "M")));
  file.Payload("dltj", ListOf(1, Join("Emp", "Dep", " *= ")));
  file.Payload("spgf", Format("1")).Payload("lpgf", Format("2")).Payload("dpgf", Format("3"));
  AddTexts(file, "schd=sh scft=sf fbtn=Find srbn=Reset mrow=1.0 lchd=lh lcft=lf snre=none dchd=dh");
  AddTexts(file, "dcft=df delh=gone updh=done sbtn=Save drbn=Undo dbtn=Delete dtbl=T rslt=r");
  file.Number("mpgs", 0x80000000).Number("adel", 5);
  const std::string document = ToXml(file.Bytes());
  const std::string search_page =
      ColumnXml("SearchPage" + kColumn + " Operator=\"&lt;=\"", "a") +
      "<InputOptions><InputDropDownList>"
      R"(<InputListItem Name="N" Value="V" Selected="True"/></InputDropDownList></InputOptions>)"
      "</SearchPageColumn></SearchPageColumns>" +
      FormatXml("1") + References("HeaderOutput=SearchHeader FooterOutput=SearchFooter") +
      Children("FindButtonTitle=Find ResetButtonTitle=Reset");
  const std::string list_page =
      ColumnXml("ListPage" + kColumn, "b") +
      "<DisplayOptions><DisplayDetailLink/></DisplayOptions></ListPageColumn></ListPageColumns>"
      "<OrderColumns>" +
      OrderXml(" Ascending=\"True\"", Children("TableOwner=O TableName=T ColumnName=b")) +
      OrderXml("", Children("TableOwner= TableName=T ColumnName=a")) +
      "</OrderColumns><JoinCriteria>" + JoinXml(R"("LeftOuter" SelfJoin="True")", "Emp", "EMP") +
      "</JoinCriteria>" + FormatXml("2") +
      References("HeaderOutput=ListHeader FooterOutput=ListFooter NoResultsOutput=ListNoResults");
  const std::string details_page =
      ColumnXml("DetailsPage" + kColumn, "d") +
      R"(<InputOptions><InputRadioCluster><InputListItem Name="M" Value="V"/></InputRadioCluster>)"
      R"(</InputOptions><DisplayOptions><DisplayImageFile Path="p"/></DisplayOptions>)"
      "</DetailsPageColumn></DetailsPageColumns><JoinCriteria>" +
      JoinXml(R"("RightOuter")", "Emp", "Dep") + "</JoinCriteria>" + FormatXml("3") +
      References(
          "HeaderOutput=DetailsHeader FooterOutput=DetailsFooter "
          "DeleteResponse=DetailsDelete UpdateResponse=DetailsUpdate") +
      Children(
          "SaveButtonTitle=Save ResetButtonTitle=Undo DeleteButtonTitle=Delete "
          "DeleteFromTable=T");
  EXPECT_EQ(
      Compact(ElementOf(document, "SearchBuilderAction")),
      R"(<SearchBuilderAction DSID="DataSource.0" DeploymentDSID="DataSource.0" ID="A" )"
      R"(Sig="8a8efd0c"><ResultsOutput Ref="A.Results"/><SearchPageInfo><SearchPageColumns>)" +
          search_page +
          R"(</SearchPageInfo><ListPageInfo MaxRows="1.0" MultiPage="True"><ListPageColumns>)" +
          list_page + "</ListPageInfo><DetailsPageInfo><DetailsPageColumns>" + details_page +
          "</DetailsPageInfo></SearchBuilderAction>");
  EXPECT_EQ(Compact(ElementOf(document, "Outputs")),
            Outputs("Results=r SearchHeader=sh SearchFooter=sf ListHeader=lh ListFooter=lf "
                    "ListNoResults=none DetailsHeader=dh DetailsFooter=df DetailsDelete=gone "
                    "DetailsUpdate=done"));
  EXPECT_EQ(ToXml(document), document);
}

TEST(InsertGroupSpecification, EverythingIsWrittenInOrderAndReadBack) {
  LegacyFile file;
  file.Action("igrp", "A").Payload("frmt", Format("1"));
  file.Payload("fval", ListOf(1, Item({"a"}, "N", 1)));
  file.Payload("icol", ListOf(1, Column("a") + Input("pick")));
  AddTexts(file, "rbtn=Reset sbtn=Save resp=thanks foot=f head=h");
  const std::string document = ToXml(file.Bytes());
  EXPECT_EQ(
      Compact(ElementOf(document, "NewRecordBuilderAction")),
      R"(<NewRecordBuilderAction DSID="DataSource.0" DeploymentDSID="DataSource.0" ID="A" )"
      R"(Sig="99d6f016"><InsertColumns>)" +
          ColumnXml("Insert" + kColumn, "a") +
          R"(<InputOptions><InputPickList AllowMultiple="True"><InputListItem Name="N" Value="V" )"
          R"(Selected="True"/></InputPickList></InputOptions></InsertColumn></InsertColumns>)" +
          References("HeaderOutput=Header FooterOutput=Footer InsertResponse=Response") +
          Children("SaveButtonTitle=Save ResetButtonTitle=Reset") + FormatXml("1") +
          "</NewRecordBuilderAction>");
  EXPECT_EQ(Compact(ElementOf(document, "Outputs")), Outputs("Header=h Footer=f Response=thanks"));
  EXPECT_EQ(ToXml(document), document);
}

TEST(SearchGroupSpecification, EmptyBuildersHaveAllContainers) {
  const std::string format = FormatXml("", "", "");
  for (const std::string& bytes :
       {LegacyFile().Action("sgrp", "A").Text("dcft", "").Bytes(),
        test::DocumentWith("<SearchBuilderAction><ListPageInfo MultiPage='true'/>"
                           "</SearchBuilderAction>",
                           "")}) {
    EXPECT_THAT(
        Compact(ToXml(bytes)),
        HasSubstr("<SearchPageInfo><SearchPageColumns/>" + format +
                  Children("FindButtonTitle= ResetButtonTitle=") +
                  R"(</SearchPageInfo><ListPageInfo MaxRows="" MultiPage="False">)" +
                  Children("ListPageColumns= OrderColumns= JoinCriteria=") + format +
                  "</ListPageInfo><DetailsPageInfo><DetailsPageColumns/><JoinCriteria/>" + format +
                  Children("SaveButtonTitle= ResetButtonTitle= DeleteButtonTitle= "
                           "DeleteFromTable=") +
                  "</DetailsPageInfo></SearchBuilderAction>"));
  }
}

TEST(SearchGroupSpecification, TextsHaveNoLineFeedsAdded) {
  EXPECT_THAT(ToXml(LegacyFile().Action("sgrp", "A").Text("dcft", "d\r").Bytes()),
              HasSubstr("<![CDATA[d\r]]>"));
}

/// Options of a column, what is written of them, and what of that after it was read.
struct OptionsCase {
  const char* name;
  std::string record;
  std::string xml;
  std::string read_xml = xml;
};

class BuilderOptions : public testing::TestWithParam<OptionsCase> {};

TEST_P(BuilderOptions, AreWrittenReadAndCarried) {
  const OptionsCase& test = GetParam();
  const bool is_input = test.xml.starts_with("<Input");
  const std::string element = is_input ? "InputOptions" : "DisplayOptions";
  const std::string column = Column("a") + test.record;
  LegacyFile file;
  file.Action(is_input ? "igrp" : "sgrp", "A")
      .Payload(is_input ? "icol" : "lcit", ListOf(1, column));
  const std::string document = ToXml(file.Bytes());
  const auto wrapped = [&](const std::string& xml) {
    return "<" + element + ">" + xml + "</" + element + ">";
  };
  EXPECT_EQ(Compact(ElementOf(document, element)), wrapped(test.xml));
  EXPECT_EQ(Compact(ElementOf(ToXml(document), element)), wrapped(test.read_xml));
  TZanfoFile loaded;
  ASSERT_EQ(test::LoadBytes(file.Bytes(), loaded), Status::kOk);
  EXPECT_THAT(test::SaveToLegacy(loaded), HasSubstr(column));
}

const std::string kEmptyText = R"(<InputText DefaultValue="" Width="0" Height="0" MaxLength="0"/>)";
const std::string kFullText = R"(<InputText DefaultValue="d" Required="True" Width="1" Height="2" )"
                              R"(MaxLength="-3" Scrolling="True" Password="True"/>)";

const OptionsCase kOptions[] = {
    {"Text", Input("text"), kFullText},
    {"Unknown", Input("TEXT"), kFullText},
    {"PlainText", Input("text", 0, 1),
     R"(<InputText DefaultValue="d" Width="1" Height="2" MaxLength="-3"/>)"},
    {"DropDown", Input("drop"), "<InputDropDownList/>"},
    {"Pick", Input("pick", 0, 0xFFFFFF00), "<InputPickList/>"},
    {"Radio", Input("radi"), "<InputRadioCluster/>"},
    {"Checked", Input("chek"), R"(<InputCheckBox Checked="True" Value="v"/>)", kEmptyText},
    {"Unchecked", Input("chek", 0, 0xFFFFFF00), R"(<InputCheckBox Value="v"/>)", kEmptyText},
    {"Expression", Input("fixd", 13),
     R"(<InputFixed Type="SQLExpression"><![CDATA[a <1>]]></InputFixed>)"},
    {"Statement", Input("fixd", 1),
     R"(<InputFixed Type="SQLStatement"><![CDATA[a <1>]]></InputFixed>)"},
    {"Timestamp", Input("fixd", 2), R"(<InputFixed Type="CurrentTimestamp"/>)"},
    {"Method", Input("fixd", 12), R"(<InputFixed Type="Method"/>)"},
    {"Normal", Display(0, 8, 256),
     R"(<DisplayNormal LineBreaks="True" Format="CurrencyWithCommas"/>)"},
    {"OutOfRange", Display(0xFFFFFFFF, 9), R"(<DisplayNormal Format="None"/>)"},
    {"Url", Display(2), "<DisplayURL/>"},
    {"Email", Display(3), "<DisplayEmail/>"},
    {"ImageFile", Display(4), R"(<DisplayImageFile Path="a/path"/>)"},
    {"ImageUrl", Display(5), "<DisplayImageURL/>"},
    {"Html", Display(6), "<DisplayHTML/>"},
};

INSTANTIATE_TEST_SUITE_P(Kinds, BuilderOptions, testing::ValuesIn(kOptions),
                         [](const auto& test_case) { return test_case.param.name; });

/// The names of all list items, column by column.
std::string ItemsOf(std::string_view document) {
  std::string items;
  for (std::size_t at = 0; (at = document.find('<', at)) != std::string_view::npos; ++at) {
    const std::string_view tag = document.substr(at);
    if (tag.starts_with("</InsertColumn>")) items += '|';
    if (tag.starts_with("<InputListItem Name=\"")) items += tag[21];
  }
  return items;
}

TEST(ListItems, BelongToEveryListThatTheyNameExactlyInFileOrder) {
  const std::string items = Item({"b"}, "1") + Item({"a"}, "2") + Item({"A"}, "3") +
                            Item({std::string("b\0x", 3)}, "4") + Item({"a"}, "5");
  const std::string columns = Column("a") + Input("drop") + Column("a") + Input("text") +
                              Column("b") + Input("radi") + Column("a") + Input("pick");
  LegacyFile file;
  file.Action("igrp", "A").Payload("fval", ListOf(5, items)).Payload("icol", ListOf(4, columns));
  EXPECT_EQ(ItemsOf(ToXml(file.Bytes())), "25||14|25|");
}

TEST(ListItems, AreThereAfterEachSectionAndAfterEachRecord) {
  TInsertGroupSpecification one;
  const auto read = [&](std::string_view code, const std::string& payload) {
    TDataFile file(AsBytes(payload));
    EXPECT_EQ(one.ReadLegacyProperty(
                  {&file, CodeOfText(code), 0, static_cast<std::uint32_t>(payload.size()), &one}),
              Status::kOk);
  };
  const std::string a = ListOf(1, Column("a") + Input("drop"));
  const std::string b = ListOf(1, Column("b") + Input("drop"));
  read("fval", ListOf(2, Item({"a"}, "1") + Item({"b"}, "2")));
  read("icol", a);
  read("icol", b);
  read("fval", ListOf(1, Item({"a"}, "3")));
  TInsertGroupSpecification two;
  for (const LegacyFile& record :
       {LegacyFile()
            .Action("igrp", "A")
            .Payload("icol", a)
            .Payload("fval", ListOf(1, Item({"a"}, "1"))),
        LegacyFile()
            .Action("igrp", "A")
            .Payload("icol", b)
            .Payload("fval", ListOf(2, Item({"b"}, "2") + Item({"a"}, "3")))}) {
    const std::string bytes = record.Bytes();
    TDataFile file(AsBytes(bytes));
    TRecordHeader header;
    ASSERT_EQ(ReadRecordHeader(file, 48, header), Status::kOk);
    ASSERT_EQ(two.ReadLegacy(&file, header), Status::kOk);
  }
  EXPECT_TRUE(one.IsEqual(two));
  LegacyFile file;
  file.Action("igrp", "A").Payload("icol", ListOf(2, a.substr(4) + b.substr(4)));
  TZanfoFile loaded;
  const std::string items = Item({"a"}, "1") + Item({"a"}, "3") + Item({"b"}, "2");
  ASSERT_EQ(test::LoadBytes(file.Payload("fval", ListOf(3, items)).Bytes(), loaded), Status::kOk);
  EXPECT_EQ(ItemsOf(test::SaveToXml(loaded)), "13|2|");
  EXPECT_TRUE(one.IsEqual(*loaded.GetApplication().actions.GetRoot()->first_child->action));
}

TEST(ListItems, OfOtherOwnersOrTablesAreDropped) {
  LegacyFile file;
  file.Action("sgrp", "A").Payload("scit", ListOf(1, Column("a") + Input("drop") + Slot("=", 12)));
  file.Payload("sfvt", ListOf(3, Item({"", "T", "a"}, "1") + Item({"O", "t", "a"}, "2") +
                                     Item({"O", "T", "a"}, "3")));
  file.Payload("dfvt", ListOf(1, Item({"O", "T", "a"}, "4")));
  EXPECT_EQ(ItemsOf(ToXml(file.Bytes())), "3");
}

TEST(ListItems, ReadFromXmlStayWithTheirColumn) {
  const auto column = [](const std::string& input) {
    return "<InsertColumn><ColumnName>a</ColumnName><InputOptions><Other/>" + input +
           "<InputText/></InputOptions></InsertColumn>";
  };
  const std::string items = "<InputListItem Name='1'/><Other/><InputListItem Name='2'/>";
  const std::string document = ToXml(test::DocumentWith(
      "<NewRecordBuilderAction><InsertColumns>" + column("<InputCheckbox Checked='True'/>") +
          column("<InputText>" + items + "</InputText>") +
          column("<InputPickList>" + items + "</InputPickList>") +
          column("<InputRadioCluster><InputListItem Name='3'/></InputRadioCluster>") +
          "</InsertColumns></NewRecordBuilderAction>",
      ""));
  EXPECT_EQ(ItemsOf(document), "||12|3|");
  EXPECT_THAT(document, HasSubstr(R"(<InputCheckBox Checked="True" Value=""/>)"));
}

TEST(ListItems, SharedByTooManyColumnsAreMalformed) {
  const auto load = [](std::uint32_t item_count) {
    std::string columns;
    for (int i = 0; i < 200; ++i) columns += Column("a") + Input("drop");
    std::string items;
    for (std::uint32_t i = 0; i < item_count; ++i) items += Item({"a"}, "1");
    LegacyFile file;
    file.Action("igrp", "A").Payload("icol", ListOf(200, columns));
    TZanfoFile loaded;
    return test::LoadBytes(file.Payload("fval", ListOf(item_count, items)).Bytes(), loaded);
  };
  // 16 MiB less 200 columns of 944 bytes, for items of 388 bytes that count 200 times each.
  EXPECT_EQ(load(213), Status::kOk);
  EXPECT_EQ(load(214), Status::kMalformed);
}

/// A section that does not have the current size, and what is written of it.
struct SizeCase {
  const char* name;
  std::string code;
  std::string section;
  std::string xml;
};

class BuilderSize : public testing::TestWithParam<SizeCase> {};

TEST_P(BuilderSize, IsUpgradedOrCopiedAsFarAsItFits) {
  const LegacyFile file =
      LegacyFile().Action("sgrp", "A").Payload(GetParam().code, GetParam().section);
  EXPECT_THAT(Compact(ToXml(file.Bytes())), HasSubstr(GetParam().xml));
}

const std::string kNarrow = Slot("c", 32) + Slot("t", 32) + Slot("d", 32) + std::string(32, 'u');
const std::string kAscending = " Ascending=\"True\"";

const SizeCase kSizes[] = {
    {"NarrowOrder", "lsrt", ListOf(1, kNarrow.substr(32) + BigEndian(2)),
     OrderXml(kAscending, Children("TableOwner=t TableName=d ColumnName=" + std::string(32, 'u')))},
    {"ShortOrder", "lsrt", ListOf(1, Slots({"o"}) + "tab"),
     OrderXml("", Children("TableOwner=o TableName=tab ColumnName="))},
    {"LongOrder", "lsrt", ListOf(1, Slots({"o", "t", "c"}) + BigEndian(1) + "more"),
     OrderXml(kAscending, Children("TableOwner=o TableName=t ColumnName=c"))},
    {"ShortColumn", "scit", ListOf(1, Slots({"t"})),
     R"(<SearchPageColumn DataType="0" Length="0" PrimaryKey="False" Operator="">)" +
         Children("ColumnName= TableName=t TableOwner= FieldTitle=") + "<InputOptions>" +
         kEmptyText},
    {"NarrowJoin", "join", ListOf(1, kNarrow + " =* " + std::string(36, '\0')),
     JoinXml("\"RightOuter\"", "t", std::string(32, 'u'))},
    {"UnpaddedJoin", "dltj", ListOf(1, Join("t", "u", " *= ").substr(0, 646)),
     JoinXml("\"LeftOuter\"", "t", "u")},
    {"UnknownJoin", "dltj", ListOf(1, kNarrow),
     R"(<JoinItem JoinType="Equal" SelfJoin="True"><FirstTable/><FirstColumn/><SecondTable/>)"},
    {"ShortFormat", "spgf", Slots({"1", "red"}) + "x", FormatXml("1", "red", "x")},
    {"LongFormat", "spgf", Format("1") + "more", FormatXml("1")},
};

INSTANTIATE_TEST_SUITE_P(Sizes, BuilderSize, testing::ValuesIn(kSizes),
                         [](const auto& test_case) { return test_case.param.name; });

TEST(SearchGroupSpecification, JoinsWithoutATableAreRefused) {
  for (const std::string page : {"ListPageInfo", "DetailsPageInfo"}) {
    const std::string joins = "<JoinCriteria><JoinItem/></JoinCriteria>";
    EXPECT_EQ(ToXml(test::DocumentWith("<SearchBuilderAction><" + page + ">" + joins + "</" + page +
                                           "></SearchBuilderAction>",
                                       "")),
              "status 0xFE02");
  }
}

}  // namespace
}  // namespace zaf
