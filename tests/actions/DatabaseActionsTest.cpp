#include <gtest/gtest.h>
#include <string>
#include <tuple>

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
using test::Expected;
using test::LegacyFile;
using test::ListOf;
using test::Slot;
using test::Slots;
using test::TLoadedFile;
using test::ToXml;

std::string Document(std::string_view actions, std::string_view data_sources = {}) {
  return test::DocumentWith(actions, "", data_sources);
}

/// A join record of 168 or 646 bytes or of the current 648, or its beginning.
std::string Join(std::string_view join_operator, std::size_t size) {
  const std::string names = Slots(size <= 168 ? 32 : 128, {"c1", "t1", "c2", "t2"});
  return Slot(names + std::string(join_operator), size);
}

std::string Enciphered(std::string_view text) {
  CCipherText cipher(text);
  cipher.Encipher();
  return std::string(cipher.View());
}

TEST(DatabaseActions, AreWrittenAndReadBack) {
  const std::string column = Slots(128, {"T", "C"}) + BigEndian(12) + "\1\2\3\4" +
                             BigEndian(0xFFFFFF9C) + Slots(128, {"RT", "RC"});
  LegacyFile file;
  file.Action("cntr", "Root").Action("srch", "Search", "Root").Text("maxm", "10");
  file.Text("strr", "1").Number("rdro", 0x80000000).Number("totr", 1).Text("cmnt", "note");
  file.Payload("join", ListOf(1, Join(" =* ", 516) + std::string(132, 'x')))
      .Payload("have", ListOf(2, Slots(128, {"", "=", "c", "", "", "", "", "no"}) +
                                     Slots(128, {"or", "", "", "t", "", "", "", ""})))
      .Payload("crit", ListOf(2, Slots(128, {"", "<", "c", "t", "5", "0", "true", "true"}) +
                                     Slots(128, {"or", "ignored", "", "", "", "", "", ""})))
      .Payload("grup", ListOf(1, Slots(128, {"T", "G"})))
      .Payload("ordr", ListOf(2, Slots(128, {"O.T", "C", "TRUE", "T", "D", "down"})))
      .Payload("slct", ListOf(1, Slots(128, {"T", "C", "A"})))
      .Payload("cols", ListOf(1, column))
      .Payload("tabl", ListOf(2, std::string("T\0O.U\0", 6)));
  file.Action("updt", "Update has the parts of its bases", "Root").Text("cmnt", "note");
  file.Payload("valu", ListOf(1, Slots(128, {"c", "v", "n", "i", "q"}))).Number("cmit", 0x100);
  const std::string document = ToXml(file.Bytes());
  EXPECT_EQ(document, Expected("database"));
  EXPECT_EQ(ToXml(document), document);
}

TEST(DatabaseActions, AreUpgradedFromOlderRecords) {
  const std::string criteria = Slots(32, {"and", "=", "c", "t"}) +
                               Slot(std::string(200, 'v'), 256) + Slots(32, {"n", "true"});
  const std::string narrow_column = Slots(32, {"t", std::string(40, 'c')}) + BigEndian(0xFFFFFFFF) +
                                    "\1\2\3\4" + BigEndian(4) + Slots(32, {"rt", "rc"});
  const std::string value =
      Slot("c", 32) + Slot(std::string(200, 'v'), 256) + Slots(32, {"n", "true"});
  const std::string unquoted = Slots(128, {"", "=", "c", "t", std::string(127, 'v'), "n", "true"});
  const std::tuple<const char*, const char*, std::string> records[] = {
      {"Column", "cols", narrow_column},
      {"Short column", "cols", Slots(32, {"t", "c"}) + std::string("\0\0\0", 3)},
      {"Reference", "slct", Slots(32, {"t", "c", "a"})},
      {"Order", "ordr", Slots(32, {"t", "c", "true", "extra"})},
      {"Group", "grup", Slots(32, {"t", "c"})},
      {"Narrow criteria", "crit", criteria},
      {"Unquoted criteria", "have", unquoted},
      {"Unknown criteria", "crit", criteria + "x"},
      {"Narrow join", "join", Join(" *= ", 168)},
      {"Unpadded join", "join", Join(" =* ", 646)},
      {"Equal join", "join", Join("iseq", 646)},
      {"Unknown operator", "join", Join(" = ", 168)},
      {"Current join", "join", Join(" *= ", 648)},
      {"Unknown join", "join", Join(" *= ", 647)},
      {"Value", "valu", value},
  };
  LegacyFile file;
  file.Action("cntr", "Root");
  for (const auto& [name, code, record] : records)
    file.Action("insr", name, "Root").Payload(code, ListOf(1, record));
  EXPECT_EQ(ToXml(file.Bytes()), Expected("upgrades"));
}

TEST(SearchSpecification, CarriedFieldsSurviveTheLegacyForm) {
  const std::string current = Join(" =* ", 516) + Slot("further", 128) + "\7xyz";
  const std::string narrow = Join(" *= ", 132) + Slot("further", 32) + "\7xyz";
  for (const std::string& record : {current, narrow}) {
    TLoadedFile file(LegacyFile().Action("srch", "S").Payload("join", ListOf(1, record)).Bytes());
    EXPECT_NE(test::SaveToLegacy(file).find(current.substr(0, 645)), std::string::npos);
  }
}

TEST(SourceSpecification, UseOfTheDevelopmentSourceIsWrittenButNotRead) {
  const std::string document = ToXml(LegacyFile().Action("updt", "U").Number("dflt", 1).Bytes());
  EXPECT_TRUE(ElementOf(document, "UpdateAction")
                  .starts_with("<UpdateAction UseDevelopmentDataSource=\"TRUE\" DSID="));
  EXPECT_TRUE(ElementOf(ToXml(document), "UpdateAction").starts_with("<UpdateAction DSID="));
}

TEST(DeleteSpecification, UnreadableSwitchIsOn) {
  TUpdateSpecification update;
  TUpdateSpecification other;
  TDataFile file(AsBytes("\0\0"));
  EXPECT_EQ(update.ReadLegacyProperty({&file, Code("cmit"), 0, 4, nullptr}), Status::kFailure);
  EXPECT_FALSE(update.IsEqual(other));
}

void ReadSection(TQuerySpecification& action, std::string_view code, std::string_view payload) {
  EXPECT_EQ(test::ReadSection(action, code, payload), Status::kOk);
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
  std::string text = "<DeleteAction><JoinCriteria><JoinItem/></JoinCriteria></DeleteAction>";
  const dom::Document document =
      dom::DOMImplementation::createDocument(std::span(text.data(), text.size()));
  TDataSourceIndex data_sources({});
  TReferenceBudget references(0);
  TDeleteSpecification search;
  EXPECT_EQ(
      search.ReadXml({TOutputIndex({}), data_sources, references}, document.getDocumentElement()),
      Status::kMalformed);
  EXPECT_TRUE(search.IsEqual(TDeleteSpecification()));
  EXPECT_EQ(references.Charge((4U << 20) + 1), Status::kMalformed);
  EXPECT_EQ(references.Charge(1), Status::kMalformed);
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
  file.Action("cust", name).Number("htyp", 0x6F636920);
  file.Text("dsrc", std::string_view("d\0cut", 5)).Text("host", "h").Text("data", "b");
  file.Text("dbms", "m").Text("user", "u").Text("pass", password).Text("dusr", "u");
  return file.Text("dpas", "P");
}

TEST(SourceSpecification, ActionsWithEqualDataSourcesShareOne) {
  LegacyFile file;
  file.Number("htyp", 0x6F636920).Text("dsrc", "d").Text("host", "h");
  WithSource(file, "A", "P");
  WithSource(file, "B", "p");
  WithSource(file, "C", "p").Text("dpas", "p");
  const std::string document = ToXml(file.Bytes());
  EXPECT_EQ(document, Expected("data-sources"));
  EXPECT_EQ(ToXml(document), document);
}

TEST(SourceSpecification, DeploymentElementGivesOnlyItsLogin) {
  const std::string document = Document(
      R"(<DirectDBMSAction ID="A" DSID="x" DeploymentDSID="y" UseDevelopmentDataSource="True"/>
         <DirectDBMSAction ID="B" DSID="z" DeploymentDSID="x"/><DirectDBMSAction DSID="y"/>)",
      R"(<DataSource ID="x"><DSType>DAM</DSType><DSN>n</DSN><UserInfo><UserName>)" +
          Enciphered("clear") + R"(</UserName></UserInfo></DataSource>
         <DataSource ID="y"><DSType>ODBC</DSType><DSN>other</DSN><UserInfo Encrypted="True"><Password>)" +
          Enciphered("p") + "</Password></UserInfo></DataSource>");
  TLoadedFile file(document);
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
  EXPECT_EQ(source(first->next_sibling->next_sibling).type_name.View(), "ODBC");
  EXPECT_NE(test::SaveToXml(file).find("UseDevelopmentDataSource=\"TRUE\""), std::string::npos);
}

}  // namespace
}  // namespace zaf
