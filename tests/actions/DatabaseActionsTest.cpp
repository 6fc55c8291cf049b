#include <gtest/gtest.h>
#include <initializer_list>
#include <string>

#include "actions/database/TDataSource.h"
#include "actions/database/TDataSourceIndex.h"
#include "actions/database/TTransCloseSpecification.h"
#include "actions/database/TUpdateSpecification.h"
#include "foundation/CCipherText.h"
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
using test::Slots;
using test::ToXml;

std::string Document(std::string_view actions, std::string_view data_sources = {}) {
  return test::DocumentWith(actions, "", data_sources);
}

std::string Enciphered(std::string_view text) {
  CCipherText cipher(text);
  cipher.Encipher();
  return std::string(cipher.View());
}

TEST(SearchSpecification, EverythingIsWrittenInOrderAndReadBack) {
  const std::string column = Slots(128, {"T", "C"}) + BigEndian(12) + "\1\2\3\4" +
                             BigEndian(0xFFFFFF9C) + Slots(128, {"RT", "RC"});
  const std::string document = ToXml(
      LegacyFile()
          .Action("srch", "S")
          .Text("maxm", "10")
          .Text("strr", "1")
          .Payload("join",
                   ListOf(1, Slots(128, {"c1", "t1", "c2", "t2"}) + " =* " + std::string(132, 'x')))
          .Payload("have", ListOf(2, Slots(128, {"", "=", "c", "", "", "", "", "no"}) +
                                         Slots(128, {"or", "", "", "t", "", "", "", ""})))
          .Payload("crit", ListOf(2, Slots(128, {"", "<", "c", "t", "5", "0", "true", "true"}) +
                                         Slots(128, {"or", "ignored", "", "", "", "", "", ""})))
          .Payload("grup", ListOf(1, Slots(128, {"T", "G"})))
          .Payload("ordr", ListOf(2, Slots(128, {"O.T", "C", "TRUE", "T", "D", "down"})))
          .Payload("slct", ListOf(1, Slots(128, {"T", "C", "A"})))
          .Payload("cols", ListOf(1, column))
          .Payload("tabl", ListOf(2, std::string("T\0O.U\0", 6)))
          .Number("rdro", 0x80000000)
          .Number("totr", 1)
          .Text("cmnt", "note")
          .Bytes());
  EXPECT_EQ(
      Compact(ElementOf(document, "SearchAction")),
      R"(<SearchAction TotalRows="True" DistinctRows="True" DSID="DataSource.0" DeploymentDSID="DataSource.0" ID="S" Sig="fdc0c260">)"
      R"(<Tables><TableName>T</TableName><TableName>O.U</TableName></Tables><DataDictionary>)"
      R"(<Column DataType="VarChar" ColumnType="-100"><TableName>T</TableName>)"
      R"(<ColumnName>C</ColumnName><RefTable>RT</RefTable><RefColumn>RC</RefColumn></Column>)"
      R"(</DataDictionary><SearchColumns><ColumnReference><TableName>T</TableName>)"
      R"(<ColumnName>C</ColumnName><ColumnAlias>A</ColumnAlias></ColumnReference></SearchColumns>)"
      R"(<OrderColumns><OrderColumn><Ascending>True</Ascending><TableOwner/>)"
      R"(<TableName>O.T</TableName><ColumnName>C</ColumnName></OrderColumn><OrderColumn>)"
      R"(<TableOwner/><TableName>T</TableName><ColumnName>D</ColumnName></OrderColumn>)"
      R"(</OrderColumns><GroupColumns><GroupColumn><TableName>T</TableName>)"
      R"(<ColumnName>G</ColumnName></GroupColumn></GroupColumns><Criteria><CriteriaItem>)"
      R"(<TableName>t</TableName><ColumnName>c</ColumnName><Operator><![CDATA[<]]></Operator>)"
      R"(<Value>5</Value><NullValue>0</NullValue><QuoteValue>true</QuoteValue>)"
      R"(<IncludeIfEmpty>true</IncludeIfEmpty></CriteriaItem><CriteriaItem>)"
      R"(<Conjunction>or</Conjunction></CriteriaItem></Criteria><HavingCriteria><CriteriaItem>)"
      R"(<TableName/><ColumnName>c</ColumnName><Operator>=</Operator><Value/>)"
      R"(<QuoteValue>no</QuoteValue><IncludeIfEmpty/></CriteriaItem><CriteriaItem>)"
      R"(<Conjunction>or</Conjunction><TableName>t</TableName><ColumnName/><Operator/><Value/>)"
      R"(<QuoteValue/><IncludeIfEmpty/></CriteriaItem></HavingCriteria><JoinCriteria>)"
      R"(<JoinItem JoinType="LeftOuter"><FirstTable>t1</FirstTable><FirstColumn>c1</FirstColumn>)"
      R"(<SecondTable>t2</SecondTable><SecondColumn>c2</SecondColumn></JoinItem></JoinCriteria>)"
      R"(<StartRow>1</StartRow><MaxRows>10</MaxRows><Comments>note</Comments></SearchAction>)");
  EXPECT_EQ(ToXml(document), document);
}

TEST(SearchSpecification, CarriedFieldsSurviveTheLegacyForm) {
  const std::string join =
      ListOf(1, Slots(128, {"c1", "t1", "c2", "t2"}) + "iseq" + std::string(132, 'x'));
  TZanfoFile file;
  ASSERT_EQ(test::LoadBytes(LegacyFile().Action("srch", "S").Payload("join", join).Bytes(), file),
            Status::kOk);
  EXPECT_NE(test::SaveToLegacy(file).find(join), std::string::npos);
}

/// A record of one list, and what its action's XML has where `element` is.
struct UpgradeCase {
  const char* name;
  std::string code;
  std::string record;
  std::string element;
  std::string xml;
};

class Upgrade : public testing::TestWithParam<UpgradeCase> {};

TEST_P(Upgrade, FillsTheCurrentRecord) {
  const UpgradeCase& test = GetParam();
  const std::string xml = Compact(ElementOf(
      ToXml(LegacyFile().Action("insr", "I").Payload(test.code, ListOf(1, test.record)).Bytes()),
      test.element));
  EXPECT_EQ(xml, test.xml);
}

const std::string kOldCriteria =
    Slots(32, {"and", "=", "c", "t"}) + Slot(std::string(200, 'v'), 256) + Slots(32, {"n", "true"});
const std::string kCriteriaXml =
    "<TableName>t</TableName><ColumnName>c</ColumnName><Operator>=</Operator><Value>" +
    std::string(127, 'v') +
    "</Value><NullValue>n</NullValue><QuoteValue>true</QuoteValue><IncludeIfEmpty>true"
    "</IncludeIfEmpty></CriteriaItem>";

/// A join record of 168 bytes, of 646 or of the current 648, and its XML.
std::string Join(std::string_view join_operator, std::size_t size) {
  const std::string names = Slots(size == 168 ? 32 : 128, {"c1", "t1", "c2", "t2"});
  return Slot(names + std::string(join_operator), size);
}
std::string JoinXml(const std::string& type) {
  return "<JoinItem JoinType=\"" + type +
         "\"><FirstTable>t1</FirstTable><FirstColumn>c1</FirstColumn><SecondTable>t2</SecondTable>"
         "<SecondColumn>c2</SecondColumn></JoinItem>";
}

INSTANTIATE_TEST_SUITE_P(
    Records, Upgrade,
    testing::Values(
        UpgradeCase{
            "Column", "cols",
            Slots(32, {"t", std::string(40, 'c')}) + BigEndian(0xFFFFFFFF) + "\1\2\3\4" +
                BigEndian(4) + Slots(32, {"rt", "rc"}),
            "Column",
            "<Column DataType=\"LongVarChar\" ColumnType=\"Integer\"><TableName>t</TableName>"
            "<ColumnName>" +
                std::string(32, 'c') +
                "</ColumnName><RefTable>rt</RefTable><RefColumn>rc</RefColumn></Column>"},
        UpgradeCase{"ShortColumn", "cols", Slots(32, {"t", "c"}) + std::string("\0\0\0", 3),
                    "Column",
                    "<Column DataType=\"0\" ColumnType=\"0\"><TableName>t</TableName><ColumnName>c"
                    "</ColumnName><RefTable/><RefColumn/></Column>"},
        UpgradeCase{"Reference", "slct", Slots(32, {"t", "c", "a"}), "ColumnReference",
                    "<ColumnReference><TableName>t</TableName><ColumnName>c</ColumnName>"
                    "<ColumnAlias>a</ColumnAlias></ColumnReference>"},
        UpgradeCase{
            "Order", "ordr", Slots(32, {"t", "c", "true", "extra"}), "OrderColumns",
            "<OrderColumns><OrderColumn><Ascending>True</Ascending><TableOwner/>"
            "<TableName>t</TableName><ColumnName>c</ColumnName></OrderColumn></OrderColumns>"},
        UpgradeCase{"Group", "grup", Slots(32, {"t", "c"}), "GroupColumns",
                    "<GroupColumns><GroupColumn><TableName>t</TableName><ColumnName>c</ColumnName>"
                    "</GroupColumn></GroupColumns>"},
        UpgradeCase{"NarrowCriteria", "crit", kOldCriteria, "CriteriaItem",
                    "<CriteriaItem><Conjunction>and</Conjunction>" + kCriteriaXml},
        UpgradeCase{"UnquotedCriteria", "have",
                    Slots(128, {"", "=", "c", "t", std::string(127, 'v'), "n", "true"}),
                    "CriteriaItem", "<CriteriaItem>" + kCriteriaXml},
        UpgradeCase{"UnknownCriteria", "crit", kOldCriteria + "x", "Criteria", ""},
        UpgradeCase{"NarrowJoin", "join", Join(" *= ", 168), "JoinItem", JoinXml("LeftOuter")},
        UpgradeCase{"UnpaddedJoin", "join", Join(" =* ", 646), "JoinItem", JoinXml("RightOuter")},
        UpgradeCase{"EqualJoin", "join", Join("iseq", 646), "JoinItem", JoinXml("Equal")},
        UpgradeCase{"UnknownOperator", "join", Join(" = ", 168), "JoinItem", JoinXml("Equal")},
        UpgradeCase{"CurrentJoin", "join", Join(" *= ", 648), "JoinItem", JoinXml("RightOuter")},
        UpgradeCase{"UnknownJoin", "join", Join(" *= ", 647), "JoinItem",
                    "<JoinItem JoinType=\"Equal\"><FirstTable/><FirstColumn/><SecondTable/>"
                    "<SecondColumn/></JoinItem>"},
        UpgradeCase{"Value", "valu",
                    Slot("c", 32) + Slot(std::string(200, 'v'), 256) + Slots(32, {"n", "true"}),
                    "ValueItem",
                    "<ValueItem><Name>c</Name><Value>" + std::string(127, 'v') +
                        "</Value><QuoteValue>true</QuoteValue><IncludeIfEmpty>true"
                        "</IncludeIfEmpty><NullValue>n</NullValue></ValueItem>"}),
    [](const testing::TestParamInfo<UpgradeCase>& test_case) { return test_case.param.name; });

/// An action's element as it is given, and what becomes of it.
struct ReadCase {
  const char* name;
  std::string element;
  std::string written;  ///< Part of the document that is written from it, or a status.
};

class Read : public testing::TestWithParam<ReadCase> {};

TEST_P(Read, TakesOrRefusesTheElement) {
  const std::string written = ToXml(Document(GetParam().element));
  EXPECT_NE(written.find(GetParam().written), std::string::npos) << written;
}

std::string JoinElement(const std::string& type, const std::string& last) {
  return "<DeleteAction ID=\"A\"><JoinCriteria><JoinItem JoinType=\"" + type +
         "\"><FirstTable>a</FirstTable><FirstColumn>b</FirstColumn><SecondTable>c</SecondTable>" +
         last + "</JoinItem></JoinCriteria></DeleteAction>";
}

INSTANTIATE_TEST_SUITE_P(
    Words, Read,
    testing::Values(
        ReadCase{"JoinType", JoinElement("", "<SecondColumn>d</SecondColumn>"),
                 "JoinType=\"Equal\""},
        ReadCase{"UnknownJoinType", JoinElement("Outer", "<SecondColumn>d</SecondColumn>"),
                 "status 0xFE02"},
        ReadCase{"JoinWithoutColumn", JoinElement("Equal", ""), "status 0xFE02"},
        ReadCase{"JoinWithEmptyColumn", JoinElement("Equal", "<SecondColumn/>"), "status 0xFE02"},
        ReadCase{"AutoCommit", R"(<DeleteAction AutoCommit="True"/>)", "AutoCommit=\"True\""},
        ReadCase{"UnknownAutoCommit", R"(<UpdateAction AutoCommit="true"/>)",
                 "AutoCommit=\"False\""},
        ReadCase{"TableOwner",
                 "<SearchAction><OrderColumns><OrderColumn><TableOwner>DBO</TableOwner><TableName>"
                 "SALES</TableName></OrderColumn></OrderColumns></SearchAction>",
                 "<OrderColumn>\n          <TableOwner/>\n          <TableName>DBO.SALES<"},
        ReadCase{"TypeNumber",
                 "<SearchAction><DataDictionary><Column DataType=\"-8\" ColumnType=\"bit\"/>"
                 "</DataDictionary></SearchAction>",
                 "DataType=\"-8\" ColumnType=\"0\""},
        ReadCase{"NoIsolation", "<BeginTransactionAction/>", "<Isolation>Exclusive<"},
        ReadCase{"Isolation",
                 "<BeginTransactionAction><Isolation>Uncommitted</Isolation>"
                 "</BeginTransactionAction>",
                 "<Isolation>Uncommitted<"},
        ReadCase{"UnknownIsolation",
                 "<BeginTransactionAction><Isolation>None</Isolation></BeginTransactionAction>",
                 "status 0xFE02"},
        ReadCase{"NoEndType", "<EndTransactionAction/>", "<EndType>Commit<"},
        ReadCase{"UnknownEndType",
                 "<EndTransactionAction><EndType>rollback</EndType></EndTransactionAction>",
                 "status 0xFE02"},
        ReadCase{"Statement",
                 "<DirectDBMSAction><MaxRows>2</MaxRows><Custom>x</Custom></DirectDBMSAction>",
                 "<Custom>x</Custom>\n      <StartRow/>\n      <MaxRows>2</MaxRows>"}),
    [](const testing::TestParamInfo<ReadCase>& test_case) { return test_case.param.name; });

TEST(UpdateSpecification, HoldsThePartsOfItsBasesInOrder) {
  const std::string file = LegacyFile()
                               .Action("updt", "U")
                               .Payload("valu", ListOf(1, Slots(128, {"c", "v", "n", "i", "q"})))
                               .Text("cmnt", "note")
                               .Number("cmit", 0x100)
                               .Number("dflt", 1)
                               .Bytes();
  EXPECT_EQ(
      Compact(ElementOf(ToXml(file), "UpdateAction")),
      R"(<UpdateAction UseDevelopmentDataSource="TRUE" DSID="DataSource.0" DeploymentDSID="DataSource.0" ID="U" Sig="0aa83987" AutoCommit="True">)"
      R"(<StartRow/><MaxRows/><Comments>note</Comments><ValueList><ValueItem><Name>c</Name>)"
      R"(<Value>v</Value><QuoteValue>q</QuoteValue><IncludeIfEmpty>i</IncludeIfEmpty>)"
      R"(<NullValue>n</NullValue></ValueItem></ValueList></UpdateAction>)");
  EXPECT_TRUE(ElementOf(ToXml(ToXml(file)), "UpdateAction").starts_with("<UpdateAction DSID="));
}

TEST(DeleteSpecification, UnreadableSwitchIsOn) {
  TUpdateSpecification update;
  TUpdateSpecification other;
  TDataFile file(AsBytes("\0\0"));
  EXPECT_EQ(update.ReadLegacyProperty({&file, Code("cmit"), 0, 4, nullptr}), Status::kFailure);
  EXPECT_FALSE(update.IsEqual(other));
}

/// Reads one section of an action.
void ReadSection(TQuerySpecification& action, std::string_view code, std::string_view payload) {
  TDataFile file(AsBytes(payload));
  EXPECT_EQ(action.ReadLegacyProperty({&file, CodeOfText(code), 0, 4, &action}), Status::kOk);
}

TEST(SourceSpecification, TypeNameAndUseOfTheDefaultCount) {
  TUpdateSpecification action;  // The base does so for derived classes, too.
  TUpdateSpecification other;
  for (const std::string_view host_type : {"oci ", "dam "}) ReadSection(action, "htyp", host_type);
  EXPECT_EQ(action.GetDataSource().type_name.View(), "Oracle");
  ReadSection(other, "htyp", "dam ");
  EXPECT_FALSE(action.IsEqual(other));
  ReadSection(other, "htyp", "oci ");
  ReadSection(other, "htyp", "dam ");
  EXPECT_TRUE(action.IsEqual(other));
  ReadSection(other, "dflt", BigEndian(1));
  EXPECT_FALSE(action.IsEqual(other));
}

TEST(TransCloseSpecification, NumberOfTheEndTypeCountsAndTwoIsARollback) {
  const char* const labels[] = {"commit", "commit", "rollback", "commit"};
  TTransCloseSpecification initial;
  for (std::uint32_t end_type = 0; end_type < 4; ++end_type) {
    TTransCloseSpecification action;
    ReadSection(action, "eact", BigEndian(end_type));
    EXPECT_EQ(action.IsEqual(initial), end_type == 0);
    CText name;
    action.GetDisplayName(name);
    EXPECT_EQ(name.View(), std::string("[Close Transaction]  with ") + labels[end_type] + " ");
    EXPECT_EQ(action.IsCommit(), end_type != 2);
  }
}

TEST(SearchSpecification, RefusedJoinIsNotKept) {
  std::string text = JoinElement("Outer", "");
  const dom::Document document =
      dom::DOMImplementation::createDocument(std::span(text.data(), text.size()));
  TDataSourceIndex data_sources({});
  TReferenceBudget references(0);
  TDeleteSpecification search;
  EXPECT_EQ(
      search.ReadXml({TOutputIndex({}), data_sources, references}, document.getDocumentElement()),
      Status::kMalformed);
  EXPECT_TRUE(search.IsEqual(TDeleteSpecification()));
}

TEST(TransCloseSpecification, PlatformTellsTheEndTypeAndNoDataSourceIsWritten) {
  LegacyFile file;
  for (const std::uint32_t platform : {0x6D616320U, 0x77696E20U})
    file.Action("endt", "E").Text("dsrc", "d").Number("plat", platform);
  const std::string document = ToXml(file.Action("bgnt", "B").Number("ilvl", 3).Bytes());
  EXPECT_EQ(
      Compact(ElementOf(document, "Actions")),
      R"(<Actions><EndTransactionAction ID="E" Sig="3d55c72d"><EndType>Commit</EndType>)"
      R"(</EndTransactionAction><EndTransactionAction ID="E" Sig="3d55c72d">)"
      R"(<EndType>Rollback</EndType></EndTransactionAction>)"
      R"(<BeginTransactionAction DSID="DataSource.0" DeploymentDSID="DataSource.0" ID="B" Sig="5d9067f2"/>)"
      R"(</Actions>)");
}

LegacyFile& WithSource(LegacyFile& file, std::string_view name, std::string_view password) {
  return file.Action("cust", name)
      .Number("htyp", 0x6F636920)
      .Text("dsrc", std::string_view("d\0cut", 5))
      .Text("host", "h")
      .Text("data", "b")
      .Text("dbms", "m")
      .Text("user", "u")
      .Text("pass", password)
      .Text("dusr", "u")
      .Text("dpas", "P");
}

TEST(SourceSpecification, ActionsWithEqualDataSourcesShareOne) {
  LegacyFile file;
  file.Number("htyp", 0x6F636920).Text("dsrc", "d").Text("host", "h");
  WithSource(file, "A", "P");
  WithSource(file, "B", "p");
  WithSource(file, "C", "p").Text("dpas", "p");
  const std::string document = ToXml(file.Bytes());
  const auto source = [](std::string_view number, std::string_view password) {
    return "<DataSource ID=\"DataSource." + std::string(number) +
           R"("><DSType>Oracle</DSType><DSN>d</DSN><DBMS>m</DBMS><Host>h</Host>)"
           R"(<Database>b</Database><UserInfo Encrypted="True"><UserName>)" +
           Enciphered("u") + "</UserName><Password>" + Enciphered(password) +
           "</Password></UserInfo></DataSource>";
  };
  EXPECT_TRUE(
      Compact(ElementOf(document, "DataSources"))
          .ends_with("</DataSource>" + source("1", "P") + source("2", "p") + "</DataSources>"));
  const auto refers = [&](std::string_view development, std::string_view deployment) {
    return document.find("DSID=\"DataSource." + std::string(development) +
                         "\" DeploymentDSID=\"DataSource." + std::string(deployment)) !=
           std::string::npos;
  };
  EXPECT_TRUE(refers("1", "1") && refers("2", "1") && refers("2", "2"));
  EXPECT_EQ(ToXml(document), document);
}

TEST(SourceSpecification, DeploymentElementGivesOnlyItsLogin) {
  const std::string document = Document(
      R"(<DirectDBMSAction ID="A" DSID="x" DeploymentDSID="y" UseDevelopmentDataSource="True"/>
         <DirectDBMSAction ID="B" DSID="z" DeploymentDSID="x"/>)",
      R"(<DataSource ID="x"><DSType>DAM</DSType><DSN>n</DSN><UserInfo><UserName>)" +
          Enciphered("clear") + R"(</UserName></UserInfo></DataSource>
         <DataSource ID="y"><DSType>ODBC</DSType><DSN>other</DSN><UserInfo Encrypted="True"><Password>)" +
          Enciphered("p") + "</Password></UserInfo></DataSource>");
  TZanfoFile file;
  ASSERT_EQ(test::LoadBytes(document, file), Status::kOk);
  const auto source = [&](const TActionEntry* entry) {
    return static_cast<const TSourceSpecification&>(*entry->action).GetDataSource();
  };
  const TActionEntry* const first = file.GetApplication().actions.GetRoot()->first_child;
  const TDataSource a = source(first);
  EXPECT_EQ(a.host_type, Code("dam "));
  EXPECT_EQ(a.data_source.View(), "n");
  EXPECT_EQ(a.user_name.View(), Enciphered("clear"));
  EXPECT_EQ(a.deployment_password.View(), "p");
  EXPECT_TRUE(a.type_name.IsEmpty() && a.deployment_user_name.IsEmpty());
  const TDataSource b = source(first->next_sibling);
  EXPECT_TRUE(b.host_type == kNoCode && b.data_source.IsEmpty());
  EXPECT_EQ(b.deployment_user_name.View(), Enciphered("clear"));
  EXPECT_NE(test::SaveToXml(file).find("UseDevelopmentDataSource=\"TRUE\""), std::string::npos);
}

}  // namespace
}  // namespace zaf
