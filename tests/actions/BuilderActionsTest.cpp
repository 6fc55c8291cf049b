#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "actions/builders/TInsertGroupSpecification.h"
#include "fields/SectionMap.h"
#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

using test::BigEndian;
using test::Expected;
using test::LegacyFile;
using test::ListOf;
using test::Slot;
using test::TLoadedFile;
using test::ToXml;
using testing::AllOf;
using testing::HasSubstr;

/// Texts in slots of 128 bytes, one after another.
std::string Slots(std::initializer_list<std::string_view> texts) { return test::Slots(128, texts); }

/// The beginning of a column's record, before its options.
std::string Column(std::string_view name) {
  return Slots({"T", name}) + BigEndian(4) + "\1xyz" + BigEndian(0xFFFFFFFF) + Slots({"O", "L"});
}

/// Options with every field set.
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

/// A join of column "c" of a table with column "d" of another.
std::string Join(std::string_view one, std::string_view other, const std::string& join_operator) {
  return Slots({"c", one, "d", other}) + join_operator + std::string(132, '\0');
}

/// Adds the sections "code=text code=text ...".
void AddTexts(LegacyFile& file, const std::string& texts) {
  std::istringstream words(texts);
  for (std::string word; words >> word;) file.Text(word.substr(0, 4), word.substr(5));
}

TEST(BuilderActions, AreWrittenAndReadBack) {
  LegacyFile file;
  file.Action("cntr", "Root").Action("sgrp", "Search", "Root");
  file.Payload("sfvt", ListOf(1, Item({"O", "T", "a"}, "N", 7)));
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
  file.Action("igrp", "New record", "Root").Payload("frmt", Format("1"));
  file.Payload("fval", ListOf(1, Item({"a"}, "N", 1)));
  file.Payload("icol", ListOf(1, Column("a") + Input("pick")));
  AddTexts(file, "rbtn=Reset sbtn=Save resp=thanks foot=f head=h");
  const std::string document = ToXml(file.Bytes());
  EXPECT_EQ(document, Expected("builders"));
  EXPECT_EQ(ToXml(document), document);
}

TEST(BuilderActions, HaveAllContainersWhenTheyAreEmpty) {
  EXPECT_EQ(ToXml(LegacyFile().Action("sgrp", "A").Text("dcft", "").Bytes()), Expected("empty"));
}

TEST(SearchGroupSpecification, TextsHaveNoLineFeedsAdded) {
  EXPECT_THAT(ToXml(LegacyFile().Action("sgrp", "A").Text("dcft", "d\r").Bytes()),
              HasSubstr("<![CDATA[d\r]]>"));
}

TEST(BuilderOptions, AreWrittenReadAndCarried) {
  // Text, unknown, plain text, drop-down, pick, radio, checked, unchecked; the four fixed values.
  const std::vector<std::string> inputs{Input("text"),
                                        Input("TEXT"),
                                        Input("text", 0, 1),
                                        Input("drop"),
                                        Input("pick", 0, 0xFFFFFF00),
                                        Input("radi"),
                                        Input("chek"),
                                        Input("chek", 0, 0xFFFFFF00),
                                        Input("fixd", 13),
                                        Input("fixd", 1),
                                        Input("fixd", 2),
                                        Input("fixd", 12)};
  // With a format and line breaks, with values out of range, and of the other kinds.
  const std::vector<std::string> displays{
      Display(0, 8, 256), Display(0xFFFFFFFF, 9), Display(2), Display(3), Display(4), Display(5),
      Display(6)};
  const auto columns = [](const std::vector<std::string>& options) {
    std::string records;
    for (const std::string& option : options) records += Column("a") + option;
    return ListOf(static_cast<std::uint32_t>(options.size()), records);
  };
  LegacyFile file;
  file.Action("cntr", "Root").Action("igrp", "Inputs", "Root").Payload("icol", columns(inputs));
  file.Action("sgrp", "Displays", "Root").Payload("lcit", columns(displays));
  const std::string document = ToXml(file.Bytes());
  EXPECT_EQ(document, Expected("options"));
  EXPECT_EQ(ToXml(document), Expected("options-again"));
  TLoadedFile loaded(file.Bytes());
  EXPECT_THAT(test::SaveToLegacy(loaded),
              AllOf(HasSubstr(columns(inputs)), HasSubstr(columns(displays))));
}

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
    EXPECT_EQ(test::ReadSection(one, code, payload), Status::kOk);
  };
  const std::string a = ListOf(1, Column("a") + Input("drop"));
  const std::string b = ListOf(1, Column("b") + Input("drop"));
  read("fval", ListOf(2, Item({"a"}, "1") + Item({"b"}, "2")));
  read("icol", a);
  read("icol", b);
  read("fval", ListOf(1, Item({"a"}, "3")));
  TInsertGroupSpecification two;
  const std::pair<std::string, std::string> records[] = {
      {a, ListOf(1, Item({"a"}, "1"))}, {b, ListOf(2, Item({"b"}, "2") + Item({"a"}, "3"))}};
  for (const auto& [columns, items] : records) {
    LegacyFile record;
    record.Action("igrp", "A").Payload("icol", columns).Payload("fval", items);
    const std::string bytes = record.Bytes();
    TDataFile file(AsBytes(bytes));
    TRecordHeader header;
    ASSERT_EQ(ReadRecordHeader(file, 48, header), Status::kOk);
    ASSERT_EQ(two.ReadLegacy(&file, header), Status::kOk);
  }
  EXPECT_TRUE(one.IsEqual(two));
  LegacyFile file;
  file.Action("igrp", "A").Payload("icol", ListOf(2, a.substr(4) + b.substr(4)));
  const std::string items = Item({"a"}, "1") + Item({"a"}, "3") + Item({"b"}, "2");
  TLoadedFile loaded(file.Payload("fval", ListOf(3, items)).Bytes());
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
  // 16 MiB less 200 columns of 944 bytes, for items of 388 bytes that are charged 200 times each.
  EXPECT_EQ(load(213), Status::kOk);
  EXPECT_EQ(load(214), Status::kMalformed);
}

TEST(BuilderActions, AreUpgradedOrCopiedAsFarAsTheyFit) {
  const std::string narrow = Slot("c", 32) + Slot("t", 32) + Slot("d", 32) + std::string(32, 'u');
  const std::tuple<const char*, const char*, std::string> sections[] = {
      {"Narrow order", "lsrt", ListOf(1, narrow.substr(32) + BigEndian(2))},
      {"Short order", "lsrt", ListOf(1, Slots({"o"}) + "tab")},
      {"Long order", "lsrt", ListOf(1, Slots({"o", "t", "c"}) + BigEndian(1) + "more")},
      {"Short column", "scit", ListOf(1, Slots({"t"}))},
      {"Narrow join", "join", ListOf(1, narrow + " =* " + std::string(36, '\0'))},
      {"Unpadded join", "dltj", ListOf(1, Join("t", "u", " *= ").substr(0, 646))},
      {"Unknown join", "dltj", ListOf(1, narrow)},
      {"Short format", "spgf", Slots({"1", "red"}) + "x"},
      {"Long format", "spgf", Format("1") + "more"},
  };
  LegacyFile file;
  file.Action("cntr", "Root");
  for (const auto& [name, code, section] : sections)
    file.Action("sgrp", name, "Root").Payload(code, section);
  EXPECT_EQ(ToXml(file.Bytes()), Expected("builder-upgrades"));
}

}  // namespace
}  // namespace zaf
