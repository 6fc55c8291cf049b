// Walks the tables of all action classes and checks the invariants of every row.

#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>

#include "actions/AllActions.h"
#include "appfile/Differences.h"
#include "appfile/TQuerySpecificationServer.h"
#include "fields/SectionMap.h"
#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

using test::ReadSection;

/// All rows of a class or record, those of its parts included, and where their fields are.
using TFields = std::vector<std::pair<const TProperty*, void*>>;
void Collect(std::span<const TProperty> rows, void* object, TFields& fields) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    void* const field = row.locate(object);
    fields.emplace_back(&row, field);
    Collect(row.codec->Nested(), field, fields);
  }
}
TFields FieldsOf(std::span<const TProperty> rows, void* object) {
  TFields fields;
  Collect(rows, object, fields);
  return fields;
}

/// An action's legacy record: its header, and its sections with their map.
struct TRecord {
  TRecordHeader header;
  std::string bytes;
  std::string order;  ///< The codes of the sections, a blank after each.
};

TRecord WriteRecord(const TQuerySpecification& action) {
  TRecord record;
  std::FILE* const file = std::tmpfile();
  TDataFile stream(file);
  std::uint32_t offset = 0;
  EXPECT_EQ(action.WriteLegacy(stream, offset, record.header), Status::kOk);
  record.bytes.resize(offset);
  std::rewind(file);
  EXPECT_EQ(std::fread(record.bytes.data(), 1, offset, file), offset);
  TDataFile image(AsBytes(record.bytes));
  TSectionMap map;
  EXPECT_EQ(map.Open(image, record.header), Status::kOk);
  for (TSectionMapEntry entry; map.Next(entry);) record.order += TextOf(entry.code) + " ";
  return record;
}

Status ReadRecord(const TRecord& record, TQuerySpecification& action) {
  TDataFile file(AsBytes(record.bytes));
  return action.ReadLegacy(&file, record.header);
}

/// Payloads of which at least one changes any field from its initial value: numbers, texts, lists,
/// and records of names, which also serve as list items of a page's columns.
std::vector<std::string> Payloads() {
  std::string names(1024, 'r');
  names.replace(524, 4, "drop");
  return {test::ListOf(1, names),
          test::BigEndian(1),
          test::BigEndian(2),
          std::string("some text\0", 10),
          test::ListOf(1, "entry\0"),
          test::ListOf(1, names.substr(0, 446)),
          std::string(640, 'f'),
          test::ListOf(1, test::BigEndian(1) + "v" + std::string(1028, 'a'))};
}

/// Reads the first payload that makes a difference.
template <class Action>
void Change(Action& action, const std::string& code) {
  for (const std::string& payload : Payloads()) {
    Action attempt = action;
    if (ReadSection(attempt, code, payload) != Status::kOk || attempt.IsEqual(action)) continue;
    EXPECT_EQ(ReadSection(action, code, payload), Status::kOk);
    return;
  }
  ADD_FAILURE() << code << ": no payload makes a difference";
}

const std::string kResults = "[Results Action] ";
const std::string kBase = "pare none rslt err  assx assn cmnt push expd ";
const std::string kSource = kBase + "htyp dsrc host data user pass dbms dusr dpas dflt ";
const std::string kSearch =
    kSource + "tabl cols slct ordr grup crit have join strr maxm totr rdro ";

/// The facts specific to a class: its label, the size of a new record, and the order of its
/// sections.
struct TClassFacts {
  std::string label;
  std::uint32_t size;
  std::string order;
};

const std::map<std::string, TClassFacts> kFacts{
    {"null", {kResults, 168, kBase}},
    {"cntr", {kResults, 168, kBase}},
    {"srch", {"[Search Action] ", 368, kSearch}},
    {"dele", {"[Delete Action] ", 368, kSearch + "cmit "}},
    {"insr", {"[Insert Action] ", 368, kSearch + "cmit valu "}},
    {"updt", {"[Update Action] ", 368, kSearch + "cmit valu "}},
    {"cust", {"[Direct DBMS Action] ", 368, kSource + "cust maxm strr "}},
    {"bgnt", {"[Open Transaction] ", 368, kSource + "ilvl rber "}},
    {"endt", {"[Close Transaction]  with commit ", 368, kSource + "eact "}},
    {"sgrp",
     {"[Search Builder Action] ", 368,
      kSource + "scit lcit dcit sfvt dfvt lsrt join dltj spgf lpgf dpgf mpgs adel srbn updh snre "
                "schd scft mrow sbtn lchd lcft fbtn drbn dtbl delh dchd dcft dbtn "}},
    {"igrp",
     {"[New Record Builder Action] ", 368, kSource + "icol fval frmt head foot resp sbtn rbtn "}},
    {"if  ", {"[If Action] ", 168, "ifex ieei " + kBase}},
    {"elif", {"[ElseIf Action] ", 168, "ifex ieei " + kBase}},
    {"else", {"[Else Action] ", 168, kBase}},
    {"whil", {"[While Loop Action] ", 168, "lexp weit " + kBase}},
    {"forl", {"[For Loop Action] ", 168, "lsta lend linc lvar lsgn " + kBase}},
    {"brek", {"[Break Action] ", 168, "llbl " + kBase}},
    {"bran", {"[Branch Action] ", 168, "snam dnam fnam iret " + kBase}},
    {"grop", {kResults, 168, kBase}},
    {"stop", {"[Return Action] ", 168, kBase}},
    {"goto", {kResults, 168, "goto comp " + kBase}},
    {"brtr", {kResults, 168, "goto comp " + kBase}},
    {"brfa", {kResults, 168, "goto comp " + kBase}},
    {"asgn", {"[Assign Action] ", 168, "agit " + kBase}},
    {"mail",
     {"[Mail Action] ", 168,
      "srvr port from to   cc   bcc  subj body ctyp cset wrap chdr " + kBase}},
    {"flvt", {"[File Action] ", 168, kBase + "flnm flmd acsg vbls fnvr mctp mccr "}},
    {"scrp", {"[Script Action] ", 168, kBase + "flav scrp scop blok "}},
    {"jvvt", {"[Java External Action] ", 168, kBase + "name type host port argu "}},
    {"cobj", {kResults, 168, kBase}},
    {"calm", {kResults, 168, kBase}},
    {"oblp", {kResults, 168, kBase}},
    {"pres", {kResults, 168, kBase}},
    {"aevt", {"[External Action] ", 168, "exev aevx aevt plat " + kBase}},
    {"adll", {"[External Action] ", 168, "exev aevx aevt plat " + kBase}},
};

/// The codes of the sections, each padded with blanks.
std::vector<std::string> Split(const std::string& order) {
  std::vector<std::string> codes;
  for (std::size_t at = 0; at < order.size(); at += 5) codes.push_back(order.substr(at, 4));
  return codes;
}

/// Sections that comparison ignores: the place in the tree and the assignments.
const std::set<std::string> kNoContent{"pare", "assx", "assn"};

/// An action in which every field with a section, except these, has been changed.
template <class Action>
Action Filled(const std::set<std::string>& omitted = kNoContent) {
  Action action;
  for (const std::string& code : Split(kFacts.at(TextOf(Action::kTypeCode)).order))
    if (!omitted.contains(code)) Change(action, code);
  return action;
}

template <class Action>
class ActionTable : public testing::Test {};

TYPED_TEST_SUITE(ActionTable, TAllActions<testing::Types>);

TYPED_TEST(ActionTable, NamesNoCodeAndNoElementTwice) {
  TypeParam action;
  std::set<std::string> codes;
  const std::string order = kFacts.at(TextOf(TypeParam::kTypeCode)).order;
  for (const auto& [row, field] : FieldsOf(TypeParam::Properties(), &action)) {
    if (row->code == kNoCode) continue;
    EXPECT_TRUE(codes.insert(TextOf(row->code)).second) << TextOf(row->code);
    EXPECT_NE(order.find(TextOf(row->code)), std::string::npos) << TextOf(row->code);
  }
  std::set<std::string_view> names;
  for (const TProperty& row : TypeParam::Properties())
    EXPECT_TRUE(row.name.empty() || names.insert(row.name).second) << row.name;
}

TYPED_TEST(ActionTable, EveryFieldCountsIsClonedAndSurvivesTheLegacyForm) {
  TypeParam filled = Filled<TypeParam>();
  const TActionEntry entry;
  filled.SetName("A");
  filled.SetParentName("P");
  filled.SetTreeEntry(&entry);
  filled.GetRunTime() = {1, 2, 3};
  ASSERT_EQ(ReadSection(filled, "assx", test::Slots(32, {"v"}) + std::string(1024, 'a')),
            Status::kOk);
  const TRecord record = WriteRecord(filled);
  EXPECT_EQ(record.header.format, 0x01000002U);
  std::unique_ptr<TQuerySpecification> made;
  std::unique_ptr<TQuerySpecification> overwritten = std::make_unique<TypeParam>();
  for (auto* const clone : {&made, &overwritten}) {
    ASSERT_EQ(filled.Clone(*clone), Status::kOk);
    const TQuerySpecification& copy = **clone;
    EXPECT_TRUE(copy.IsEqual(filled));
    EXPECT_EQ(WriteRecord(copy).bytes, record.bytes);
    EXPECT_EQ(copy.GetName().View(), "A");
    EXPECT_EQ(copy.GetTreeEntry(), &entry);
    EXPECT_EQ(
        copy.GetRunTime().word + 10 * copy.GetRunTime().second_word + 100 * copy.GetRunTime().flag,
        321U);
  }
  TypeParam read;
  ASSERT_EQ(ReadRecord(record, read), Status::kOk);
  EXPECT_TRUE(read.IsEqual(filled));
  read.SetName("A");
  EXPECT_EQ(WriteRecord(read).bytes, record.bytes);
}

/// The places in the XML form of sections that classes write by hand.
const std::map<std::string, std::string> kWrittenByHand{
    {"dsrc", "DSID.DSN"},
    {"host", "DSID.Host"},
    {"data", "DSID.Database"},
    {"user", "DSID.UserInfo.UserName"},
    {"pass", "DSID.UserInfo.Password"},
    {"dbms", "DSID.DBMS"},
    {"dusr", "DeploymentDSID.UserInfo.UserName"},
    {"dpas", "DeploymentDSID.UserInfo.Password"},
    {"dflt", "UseDevelopmentDataSource"},
    {"sfvt", "SearchPageInfo.SearchPageColumns"},
    {"dfvt", "DetailsPageInfo.DetailsPageColumns"},
    {"fval", "InsertColumns"},
    {"agit", "AssignItem"},
    {"flnm", "ReadFile.Name"},
    {"acsg", "ReadFile.Range"},
    {"vbls", "ReadFile.Variable"},
    {"aevx", "Target"},
    {"exev", "Target"},
};
/// Sections without XML form, or whose values from these payloads have none.
const std::set<std::string> kNotWritten{"htyp", "rber", "eact", "adel", "lsgn", "goto", "aevt",
                                        "type", "comp", "flmd", "fnvr", "mctp", "mccr"};
const std::set<std::string> kOfTheDataSource{"htyp", "dsrc", "host", "data", "user",
                                             "pass", "dbms", "dusr", "dpas", "dflt"};
/// Fields that depend on others, and sections that replace others.
const std::map<std::string, std::string> kTogether{
    {"scit", "sfvt"}, {"dcit", "dfvt"}, {"icol", "fval"}, {"exev", "aevt"}, {"aevx", "aevt"}};

/// Collects the names of fields in the XML form by the codes of their sections.
void TakeNames(std::span<const TProperty> rows, const std::string& path,
               std::map<std::string, std::string>& names) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    const std::string name = path + std::string(row.name);
    if (row.code != kNoCode && !row.name.empty()) names.insert_or_assign(TextOf(row.code), name);
    TakeNames(row.codec->Nested(), row.form == XmlForm::kChild ? name + "." : path, names);
  }
}
template <class... Actions>
struct TNames {
  static void Take(std::map<std::string, std::string>& names) {
    (TakeNames(Actions::Properties(), {}, names), ...);
  }
};

/// Checks that all differences are of one field of the action "A".
class TOneField final : public TDifferenceObserver {
 public:
  /// `name`: that of the field; the names of its parts are appended to it.
  explicit TOneField(std::string name) : name_(std::move(name)) {}
  void OnDifference(const TDifference& difference) override {
    ++count;
    EXPECT_EQ(difference.subject, "A");
    const std::string_view field = difference.field;
    EXPECT_EQ(field.substr(0, name_.size()), name_);
    const std::string_view part = field.substr(std::min(name_.size(), field.size()));
    EXPECT_TRUE(part.empty() || part.front() == '.' || part.front() == '[') << field;
  }
  int count = 0;

 private:
  std::string name_;
};

void Place(const TQuerySpecification& action, TApplication& application) {
  std::unique_ptr<TQuerySpecification> copy;
  ASSERT_EQ(action.Clone(copy), Status::kOk);
  copy->SetName("A");
  ASSERT_NE(application.actions.EnsureRoot(), nullptr);
  ASSERT_EQ(application.actions.Place(std::move(copy)), Status::kOk);
}

TYPED_TEST(ActionTable, DifferenceIsNamedLikeTheField) {
  std::map<std::string, std::string> names;
  TAllActions<TNames>::Take(names);
  TakeNames(TSearchSpecification::Properties(), {}, names);
  for (const auto& [code, name] : kWrittenByHand) names[code] = name;
  TakeNames(TypeParam::Properties(), {}, names);
  const bool has_source = TypeParam::kTypeCode != Code("endt");
  for (const std::string& code : Split(kFacts.at(TextOf(TypeParam::kTypeCode)).order)) {
    if (kNoContent.contains(code) || code == "plat") continue;  // The latter selects the element.
    SCOPED_TRACE(code);
    std::set<std::string> omitted = kNoContent;
    if (const auto other = kTogether.find(code); other != kTogether.end())
      omitted.insert(other->second);
    TApplication applications[2];
    Place(Filled<TypeParam>(omitted), applications[0]);
    omitted.insert(code);
    Place(Filled<TypeParam>(omitted), applications[1]);
    EXPECT_FALSE(applications[0].IsEqual(applications[1]));
    const bool is_written =
        !kNotWritten.contains(code) && (has_source || !kOfTheDataSource.contains(code));
    TOneField field(is_written ? names[code] : "'" + code + "'");
    FindDifferences(applications[0], applications[1], DifferenceScope::kEverything, field);
    EXPECT_GT(field.count, 0);
  }
}

TYPED_TEST(ActionTable, ElementReadsBackAsTheClass) {
  const TQuerySpecificationServer server;
  // An external action has an element for each of its kinds.
  const std::string_view element =
      TypeParam::kElement.empty()
          ? (TypeParam::kTypeCode == Code("adll") ? "ExternalDLLAction" : "AppleEventAction")
          : TypeParam::kElement;
  std::unique_ptr<TQuerySpecification> action;
  ASSERT_EQ(server.CreateByElement(element, action), Status::kOk);
  const bool is_written_as_the_base = TypeParam::kElement == TQuerySpecification::kElement;
  EXPECT_EQ(action->GetTypeCode(),
            is_written_as_the_base ? TQuerySpecification::kTypeCode : TypeParam::kTypeCode);
}

TYPED_TEST(ActionTable, LabelSizeAndOrderAreThoseOfTheClass) {
  const TClassFacts& facts = kFacts.at(TextOf(TypeParam::kTypeCode));
  TypeParam action;
  EXPECT_EQ(action.GetRecordSize(), facts.size);
  action.SetName("A");
  action.SetParentName("P");
  CText name;
  action.GetDisplayName(name);
  EXPECT_EQ(name.View(), facts.label + "A");
  // All sections that are written only if they have content.
  for (const std::string& code : Split(facts.order))
    for (const std::string& payload : {std::string("text\0", 5), std::string(1056, 'a')})
      if (code != "eact") static_cast<void>(ReadSection(action, code, payload));
  EXPECT_EQ(WriteRecord(action).order, facts.order);
}

/// The first bytes of options, in the host's byte order.
std::string InputKind(FourCharCode kind) { return {reinterpret_cast<const char*>(&kind), 4}; }
std::string Number(std::int32_t number) { return {reinterpret_cast<const char*>(&number), 4}; }

template <class Record>
class RecordTable : public testing::Test {};
using TRecords = testing::Types<TColumnInfo, TColumnReference, TCriteriaItem, TGroupInfo, TJoinItem,
                                TOrderInfo, TValueItem, TIfExpressionInfo, TWhileExpressionInfo,
                                TSearchColumnInfo, TListColumnInfo, TDetailColumnInfo,
                                TSortColumnInfo, TListItem, TPageFormat, TCookie>;
TYPED_TEST_SUITE(RecordTable, TRecords);

TYPED_TEST(RecordTable, EveryFieldCounts) {
  TypeParam record;
  std::memset(static_cast<void*>(&record), 'r', sizeof record);
  for (const auto& [row, field] : FieldsOf(TypeParam::Properties(), &record)) {
    SCOPED_TRACE(row->name);
    TypeParam changed = record;
    const auto place = static_cast<char*>(field) - reinterpret_cast<char*>(&record);
    const std::string value = row->name == "InputOptions"     ? InputKind(Code("fixd"))
                              : row->name == "DisplayOptions" ? Number(6)
                                                              : Number(0);
    std::memcpy(reinterpret_cast<char*>(&changed) + place, value.data(), value.size());
    EXPECT_TRUE(AreRowsEqual(TypeParam::Properties(), &record, &record));
    EXPECT_FALSE(AreRowsEqual(TypeParam::Properties(), &record, &changed));
  }
}

TEST(RecordFields, SomeTextsCompareByTheirOwnRules) {
  const auto equal = []<class Record, std::size_t kWidth>(TFixedText<kWidth> Record::*text,
                                                          std::string_view one,
                                                          std::string_view two) {
    Record records[2] = {};
    (records[0].*text).Set(one);
    (records[1].*text).Set(two);
    return AreRowsEqual(Record::Properties(), &records[0], &records[1]);
  };
  const auto operators =
      static_cast<TFixedText<128> TIfExpressionInfo::*>(&TIfExpressionInfo::comparison);
  EXPECT_TRUE(equal(&TOrderInfo::ascending, "TRUE", "true"));
  EXPECT_TRUE(equal(operators, "equals", "equal"));
  EXPECT_FALSE(equal(operators, "<=", "<"));
  EXPECT_FALSE(equal(operators, {"<\0a", 3}, {"<\0b", 3}));
}

/// A kind of options, and the offsets of the fields that it compares.
struct TChoiceFields {
  const TFieldCodec& codec;
  std::string kind;
  std::set<std::size_t> fields;
};

TEST(BuilderOptions, CountTheFieldsOfTheirKind) {
  const TChoiceFields choices[] = {
      {kInputOptionsCodec, InputKind(Code("text")), {4, 132, 136, 140, 144, 145, 146}},
      {kInputOptionsCodec, InputKind(Code("drop")), {}},
      {kInputOptionsCodec, InputKind(Code("pick")), {147}},
      {kInputOptionsCodec, InputKind(Code("radi")), {}},
      {kInputOptionsCodec, InputKind(Code("chek")), {147, 148}},
      {kInputOptionsCodec, InputKind(Code("fixd")), {276, 280}},
      {kListDisplayCodec, Number(0), {4, 8}},
      {kListDisplayCodec, Number(1), {}},
      {kDetailDisplayCodec, Number(4), {12}},
  };
  // Where fields of both begin, including carried ones. In `rest` they are all set.
  constexpr std::size_t kOffsets[] = {4,   8,   12,  132, 136, 140, 144,
                                      145, 146, 147, 148, 276, 280, 408};
  std::string rest(420, '\0');
  for (const std::size_t offset : kOffsets) rest[offset] = 1;
  rest.erase(0, 4);
  for (const TChoiceFields& choice : choices) {
    const std::string one = choice.kind + rest;
    for (const std::size_t offset : kOffsets) {
      std::string two = one;
      two[offset] = 0;
      EXPECT_EQ(choice.codec.IsEqual(one.data(), two.data()), !choice.fields.contains(offset))
          << choice.kind << offset;
    }
    for (const TChoiceFields& other : choices)
      EXPECT_EQ(choice.codec.IsEqual(one.data(), (other.kind + rest).data()) ||
                    &choice.codec != &other.codec,
                choice.kind == other.kind || &choice.codec != &other.codec);
  }
}

}  // namespace
}  // namespace zaf
