#include "bench/SampleFields.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

namespace zaf::bench {

using test::BigEndian;

/// The content of a section. The texts come first.
enum class TSampleFields::Form : std::uint8_t {
  kName,
  kWords,
  kPhrase,
  kPage,
  kResults,
  kExpression,
  kValue,
  kNumberText,
  kMode,
  kNumber,
  kFlag,
  kHostType,
  kPlatform,
  kTexts,
  kColumns,
  kReferences,
  kOrders,
  kGroups,
  kCriteria,
  kJoins,
  kValues,
  kExpressions,
  kAssigns,
  kShortAssignments,
  kLongAssignments,
  kParameters,
  kEventParameters,
  kSearchColumns,
  kListColumns,
  kDetailsColumns,
  kInsertColumns,
  kPageItems,
  kInsertItems,
  kSortColumns,
  kPageFormat,
  kLanguage,
  kJavaKind
};

/// A section of a group: a kind of action, or the common part of several kinds.
struct TSampleFields::TField {
  std::string_view group;
  std::string_view code;
  Form form;
  std::uint32_t chance;  ///< Percentage; kUsual: the style's.
};

namespace {

constexpr std::uint32_t kUsual = 0;
constexpr std::size_t kWide = 128;
constexpr std::size_t kNarrow = 32;
constexpr std::size_t kLongValue = 256;
constexpr std::size_t kCriterion = 1024;
constexpr std::size_t kOldestCriterion = 448;

constexpr std::string_view kSourceKinds[] = {"srch", "dele", "insr", "updt", "cust",
                                             "bgnt", "endt", "sgrp", "igrp"};
constexpr std::string_view kSearchKinds[] = {"srch", "dele", "insr", "updt"};
constexpr std::string_view kResultKinds[] = {"glob", "srch", "updt", "dele", "cust", "sgrp"};
constexpr std::string_view kHostTypes[] = {"odbc", "psql", "oci ", "FMPm", "dam "};
constexpr std::string_view kConjunctions[] = {"and", "or", "and (", ""};
constexpr std::string_view kComparisons[] = {"=", ">", "<", "like", "!="};
constexpr std::string_view kJoinOperators[] = {"iseq", "iseq", " =* ", " *= "};
constexpr std::string_view kInputKinds[] = {"text", "drop", "pick", "radi", "chek", "fixd"};
constexpr std::string_view kScopes[] = {"application", "user", "request", "Default", "cookie"};
constexpr std::string_view kModes[] = {"d", "w", "a", "r"};
constexpr std::string_view kLanguages[] = {"jscr", "vscr", "ascr"};
constexpr std::string_view kBooleans[] = {"true", "false"};

/// Joins the parts. Braced lists are evaluated from left to right, unlike operands of `+`: so every
/// compiler uses the same random numbers for the same parts.
std::string Record(std::initializer_list<std::string> parts) {
  std::string record;
  for (const std::string& part : parts) record += part;
  return record;
}

bool Has(std::span<const std::string_view> kinds, std::string_view type) {
  for (const std::string_view kind : kinds)
    if (kind == type) return true;
  return false;
}

}  // namespace

std::span<const TSampleFields::TField> TSampleFields::Fields() {
  static constexpr TField kFields[] = {
      {"application", "titl", Form::kName, 100},
      {"application", "athr", Form::kName, 100},
      {"application", "vers", Form::kNumberText, kUsual},
      {"application", "cmnt", Form::kPhrase, 70},
      {"application", "asts", Form::kWords, kUsual},
      {"application", "form", Form::kWords, kUsual},
      {"application", "dbug", Form::kFlag, 30},
      {"source", "htyp", Form::kHostType, 85},
      {"source", "dsrc", Form::kName, kUsual},
      {"source", "host", Form::kName, kUsual},
      {"source", "data", Form::kName, kUsual},
      {"source", "dbms", Form::kName, kUsual},
      {"source", "user", Form::kName, kUsual},
      {"source", "pass", Form::kName, kUsual},
      {"source", "dusr", Form::kName, 40},
      {"source", "dpas", Form::kName, 40},
      {"search", "tabl", Form::kTexts, 90},
      {"search", "cols", Form::kColumns, kUsual},
      {"search", "crit", Form::kCriteria, kUsual},
      {"search", "strr", Form::kNumberText, kUsual},
      {"search", "maxm", Form::kNumberText, kUsual},
      {"search", "totr", Form::kFlag, kUsual},
      {"search", "rdro", Form::kFlag, kUsual},
      {"srch", "slct", Form::kReferences, 95},
      {"srch", "ordr", Form::kOrders, 50},
      {"srch", "grup", Form::kGroups, 15},
      {"srch", "have", Form::kCriteria, 10},
      {"srch", "join", Form::kJoins, 50},
      {"insr", "valu", Form::kValues, kUsual},
      {"insr", "cmit", Form::kFlag, kUsual},
      {"updt", "valu", Form::kValues, kUsual},
      {"updt", "cmit", Form::kFlag, kUsual},
      {"dele", "cmit", Form::kFlag, kUsual},
      {"cust", "cust", Form::kPhrase, 90},
      {"cust", "strr", Form::kNumberText, kUsual},
      {"cust", "maxm", Form::kNumberText, kUsual},
      {"bgnt", "ilvl", Form::kNumber, 95},
      {"endt", "eact", Form::kNumber, 100},
      {"if  ", "ifex", Form::kExpression, 80},
      {"if  ", "ieei", Form::kExpressions, 40},
      {"elif", "ifex", Form::kExpression, 80},
      {"elif", "ieei", Form::kExpressions, 20},
      {"whil", "lexp", Form::kExpression, 100},
      {"whil", "weit", Form::kExpressions, 60},
      {"forl", "lsta", Form::kNumberText, 100},
      {"forl", "lend", Form::kNumberText, 100},
      {"forl", "linc", Form::kNumberText, kUsual},
      {"forl", "lvar", Form::kName, 100},
      {"forl", "lsgn", Form::kFlag, kUsual},
      {"brek", "llbl", Form::kName, kUsual},
      {"bran", "snam", Form::kName, 100},
      {"bran", "dnam", Form::kName, 60},
      {"bran", "fnam", Form::kName, 60},
      {"bran", "iret", Form::kFlag, kUsual},
      {"asgn", "agit", Form::kAssigns, 90},
      {"mail", "srvr", Form::kName, 90},
      {"mail", "port", Form::kNumberText, 60},
      {"mail", "from", Form::kName, 90},
      {"mail", "to  ", Form::kName, 90},
      {"mail", "cc  ", Form::kName, kUsual},
      {"mail", "bcc ", Form::kName, 20},
      {"mail", "subj", Form::kWords, 90},
      {"mail", "body", Form::kPhrase, 90},
      {"mail", "ctyp", Form::kName, kUsual},
      {"mail", "cset", Form::kName, kUsual},
      {"mail", "wrap", Form::kNumberText, kUsual},
      {"mail", "chdr", Form::kName, 40},
      {"flvt", "flmd", Form::kMode, 100},
      {"flvt", "flnm", Form::kName, 100},
      {"flvt", "acsg", Form::kValue, kUsual},
      {"flvt", "vbls", Form::kTexts, kUsual},
      {"flvt", "fnvr", Form::kName, kUsual},
      {"scrp", "flav", Form::kLanguage, 100},
      {"scrp", "scrp", Form::kPhrase, 100},
      {"scrp", "scop", Form::kName, kUsual},
      {"scrp", "blok", Form::kFlag, kUsual},
      {"jvvt", "name", Form::kName, 100},
      {"jvvt", "type", Form::kJavaKind, kUsual},
      {"jvvt", "host", Form::kName, kUsual},
      {"jvvt", "port", Form::kNumberText, kUsual},
      {"jvvt", "argu", Form::kTexts, kUsual},
      {"aevt", "plat", Form::kPlatform, 100},
      {"aevt", "aevx", Form::kParameters, 100},
      {"aevt", "aevt", Form::kEventParameters, 50},
      {"adll", "exev", Form::kParameters, 100},
      {"sgrp", "scit", Form::kSearchColumns, 100},
      {"sgrp", "lcit", Form::kListColumns, 100},
      {"sgrp", "dcit", Form::kDetailsColumns, 100},
      {"sgrp", "sfvt", Form::kPageItems, kUsual},
      {"sgrp", "dfvt", Form::kPageItems, kUsual},
      {"sgrp", "lsrt", Form::kSortColumns, kUsual},
      {"sgrp", "join", Form::kJoins, 50},
      {"sgrp", "dltj", Form::kJoins, 50},
      {"sgrp", "spgf", Form::kPageFormat, kUsual},
      {"sgrp", "lpgf", Form::kPageFormat, kUsual},
      {"sgrp", "mrow", Form::kNumberText, kUsual},
      {"sgrp", "mpgs", Form::kFlag, kUsual},
      {"sgrp", "schd", Form::kPage, 60},
      {"sgrp", "lchd", Form::kPage, 60},
      {"sgrp", "lcft", Form::kWords, kUsual},
      {"sgrp", "snre", Form::kWords, kUsual},
      {"sgrp", "dchd", Form::kPage, 40},
      {"sgrp", "updh", Form::kWords, kUsual},
      {"sgrp", "fbtn", Form::kWords, kUsual},
      {"sgrp", "sbtn", Form::kWords, kUsual},
      {"sgrp", "dbtn", Form::kWords, kUsual},
      {"sgrp", "dtbl", Form::kName, kUsual},
      {"igrp", "icol", Form::kInsertColumns, 100},
      {"igrp", "fval", Form::kInsertItems, kUsual},
      {"igrp", "head", Form::kPage, 60},
      {"igrp", "foot", Form::kWords, kUsual},
      {"igrp", "resp", Form::kPage, 60},
      {"igrp", "sbtn", Form::kWords, kUsual},
      {"igrp", "rbtn", Form::kWords, kUsual},
      {"igrp", "frmt", Form::kPageFormat, kUsual},
      {"any", "cmnt", Form::kPhrase, 25},
      {"any", "none", Form::kWords, 5},
      {"any", "err ", Form::kWords, 12},
      {"any", "push", Form::kFlag, 100},
      {"any", "expd", Form::kFlag, 100},
      {"any", "assn", Form::kShortAssignments, 3},
      {"any", "assx", Form::kLongAssignments, 4},
  };
  return kFields;
}

TSampleFields::TSampleFields(const TSampleStyle& style, TRandom& random, TSampleText& text,
                             test::LegacyFile& file)
    : style_(style),
      random_(random),
      text_(text),
      file_(file),
      has_older_records_(random.Chance(60)) {}

void TSampleFields::WriteApplication() {
  WriteRows("application");
  if (random_.Chance(70)) WriteRows("source");
}

void TSampleFields::WriteAction(std::string_view type) {
  if (Has(kSourceKinds, type)) WriteRows("source");
  if (Has(kSearchKinds, type)) WriteRows("search");
  WriteRows(type);
  if (Has(kResultKinds, type) && random_.Chance(style_.results_chance))
    file_.Payload("rslt", Make(Form::kResults));
  WriteRows("any");
}

void TSampleFields::WriteRows(std::string_view group) {
  // With dense fields, those that are otherwise rare are frequent as well.
  const std::uint32_t factor = style_.field_chance > 90 ? 12 : 1;
  const auto chance = [&](const TField& field) {
    return field.chance == kUsual ? style_.field_chance : factor * field.chance;
  };
  for (const TField& field : Fields())
    if (field.group == group && random_.Chance(chance(field)))
      file_.Payload(field.code, Make(field.form));
}

std::vector<std::string_view> TSampleFields::Codes() {
  std::vector<std::string_view> codes;
  for (const TField& field : Fields()) codes.push_back(field.code);
  return codes;
}

std::string TSampleFields::MakeSection(std::string_view code) {
  const auto fields = Fields();
  const auto found = std::ranges::find(fields, code, &TField::code);
  return found == fields.end() ? std::string() : Make(found->form);
}

std::string TSampleFields::Make(Form form) {
  return form <= Form::kMode ? MakeText(form) + '\0' : MakeBlock(form);
}

std::string TSampleFields::MakeText(Form form) {
  const auto around = [&](std::uint32_t size) { return size / 2 + random_.Below(size + 1); };
  switch (form) {
    case Form::kName:
      return std::string(text_.Column());
    case Form::kWords:
      return text_.Words(3 + random_.Below(6));
    case Form::kPhrase:
      return text_.Sentence(around(style_.phrase_size));
    case Form::kPage:
      return text_.Html(around(style_.page_size));
    case Form::kResults: {
      // One page in twelve is long.
      const std::uint32_t pages = random_.Below(12) == 0 ? 4 : 1;
      return text_.Html(around(pages * style_.page_size));
    }
    case Form::kExpression:
      return text_.Expression();
    case Form::kValue:
      return text_.Value();
    case Form::kMode:
      return std::string(random_.Pick(kModes));
    default:
      return text_.Number();
  }
}

std::string TSampleFields::MakeBlock(Form form) {
  switch (form) {
    case Form::kNumber:
      return BigEndian(1 + random_.Below(2));
    case Form::kFlag:
      return BigEndian(random_.Below(2));
    case Form::kHostType:
      return std::string(random_.Pick(kHostTypes));
    case Form::kPlatform:
      return "aevx";
    case Form::kLanguage:
      return std::string(random_.Pick(kLanguages));
    case Form::kJavaKind:
      return "bean";
    case Form::kTexts:
      return Texts(1 + random_.Below(3));
    case Form::kShortAssignments:
      return Assignments(256);
    case Form::kLongAssignments:
      return Assignments(1024);
    case Form::kParameters:
      return Parameters(false);
    case Form::kEventParameters:
      return Parameters(true);
    case Form::kPageFormat:
      return test::Slots(kWide, {"1", "#000000", "#FFFFFF", "2", "0"});
    default:
      return MakeList(form);
  }
}

std::string TSampleFields::MakeList(Form form) {
  const std::uint32_t count = 1 + random_.Below(style_.list_items);
  std::string records;
  for (std::uint32_t i = 0; i < count; ++i) records += MakeRecord(form, i);
  return test::ListOf(count, records);
}

std::string TSampleFields::MakeRecord(Form form, std::uint32_t index) {
  switch (form) {
    case Form::kColumns:
      return Column();
    case Form::kReferences:
      return Record({Slot(text_.Table()), Slot(text_.Column()),
                     Slot(random_.Chance(20) ? text_.Subject() : "")});
    case Form::kOrders:
      return Record({Slot(text_.Table()), Slot(text_.Column()), Slot(random_.Pick(kBooleans))});
    case Form::kGroups:
      return Record({Slot(text_.Table()), Slot(text_.Column())});
    case Form::kCriteria:
      return Criterion();
    case Form::kJoins:
      return Join();
    case Form::kValues:
      return Value();
    case Form::kExpressions:
      return test::Slots(kWide, {random_.Pick(kConjunctions), text_.Expression(),
                                 random_.Pick(kComparisons), text_.Value()});
    case Form::kAssigns:
      return AssignItem();
    case Form::kSortColumns:
      return Record(
          {Slot("DBO"), Slot(text_.Table()), Slot(text_.Column()), BigEndian(random_.Below(2))});
    default:
      return MakeBuilderRecord(form, index);
  }
}

std::string TSampleFields::MakeBuilderRecord(Form form, std::uint32_t index) {
  const std::string name = "FIELD_" + std::to_string(1 + random_.Below(2) * 2);
  const std::string item = test::Slots(kWide, {text_.Words(1), text_.Value()}) + BigEndian(0);
  switch (form) {
    case Form::kSearchColumns:
      return Record({BuilderColumn(index), InputOptions(index), test::Slot("=", 12)});
    case Form::kListColumns:
      return Record({BuilderColumn(index), DisplayOptions(172, index)});
    case Form::kDetailsColumns:
      return Record({BuilderColumn(index), InputOptions(index), DisplayOptions(48, index)});
    case Form::kInsertColumns:
      return Record({BuilderColumn(index), InputOptions(index)});
    case Form::kPageItems:
      return Record({test::Slots(kWide, {"DBO", "STAFF", name}), item});
    default:
      return Record({test::Slot(name, kWide), item});
  }
}

std::string TSampleFields::Slot(std::string_view text) const {
  return test::Slot(text, has_older_records_ ? kNarrow : kWide);
}

std::string TSampleFields::LongSlot(std::string_view text) const {
  return test::Slot(text, has_older_records_ ? kLongValue : kWide);
}

std::string TSampleFields::Column() {
  return Record({Slot(text_.Table()), Slot(text_.Column()), BigEndian(1 + random_.Below(12)),
                 BigEndian(0), BigEndian(1 + random_.Below(12)),
                 Slot(random_.Chance(30) ? text_.Table() : ""), Slot("")});
}

std::string TSampleFields::Criterion() {
  if (random_.Chance(10))
    return test::Slot("(", has_older_records_ ? kOldestCriterion : kCriterion);
  return Record({Slot(random_.Pick(kConjunctions)), Slot(random_.Pick(kComparisons)),
                 Slot(text_.Column()), Slot(text_.Table()), LongSlot(text_.Value()), Slot(""),
                 Slot(random_.Pick(kBooleans)), has_older_records_ ? "" : Slot("true")});
}

std::string TSampleFields::Join() {
  return Record({Slot(text_.Column()), Slot(text_.Table()), Slot(text_.Column()),
                 Slot(text_.Table()), std::string(random_.Pick(kJoinOperators)), Slot(""),
                 BigEndian(0)});
}

std::string TSampleFields::Value() {
  return Record({Slot(text_.Column()), LongSlot(text_.Value()), Slot(""),
                 Slot(random_.Pick(kBooleans)), has_older_records_ ? "" : Slot("true")});
}

std::string TSampleFields::BuilderColumn(std::uint32_t index) {
  return Record({test::Slots(kWide, {"STAFF", "FIELD_" + std::to_string(index)}),
                 BigEndian(1 + random_.Below(12)), BigEndian(index == 0 ? 0x01000000 : 0),
                 BigEndian(random_.Below(200)), test::Slots(kWide, {"DBO", text_.Words(2)})});
}

std::string TSampleFields::InputOptions(std::uint32_t index) {
  // Kinds depend on the column's index, so that list items match columns with lists.
  const std::string_view kind = kInputKinds[index % std::size(kInputKinds)];
  return Record({std::string(kind), test::Slot(text_.Value(), kWide), BigEndian(30), BigEndian(1),
                 BigEndian(80), BigEndian(random_.Below(2) << 24), test::Slot(text_.Value(), kWide),
                 BigEndian(random_.Below(13)), test::Slot("", kWide), std::string(12, '\0')});
}

std::string TSampleFields::DisplayOptions(std::size_t size, std::uint32_t index) {
  return test::Slot(
      Record({BigEndian(index % 7), BigEndian(random_.Below(9)), BigEndian(0), "/images/"}), size);
}

std::string TSampleFields::AssignItem() {
  const std::string value =
      random_.Chance(40) ? text_.Sentence(3 * style_.phrase_size) : text_.Value();
  const std::string_view scope = random_.Pick(kScopes);
  const bool is_cookie = scope == "cookie";
  return Record({BigEndian(static_cast<std::uint32_t>(value.size())), value,
                 test::Slot(text_.Column(), 256), test::Slot(scope, 128),
                 test::Slot(is_cookie ? "43200" : "", 128),
                 test::Slot(is_cookie ? "/shop" : "", 256), test::Slot("", 256), BigEndian(0)});
}

std::string TSampleFields::Parameters(bool is_event) {
  std::string bytes = is_event ? "misccopy" : "";
  bytes.append(text_.Words(1)).append(".exe").append(1, '\0');
  const std::uint32_t count = random_.Below(style_.list_items);
  bytes += BigEndian(count);
  for (std::uint32_t i = 0; i < count; ++i)
    bytes.append(text_.Column()).append(1, '\0').append(text_.Value()).append(1, '\0');
  return bytes;
}

std::string TSampleFields::Assignments(std::size_t value_width) {
  std::string records;
  for (std::uint32_t i = 1 + random_.Below(3); i > 0; --i)
    records +=
        Record({test::Slot(text_.Column(), kNarrow), test::Slot(text_.Value(), value_width)});
  return records;
}

std::string TSampleFields::Texts(std::uint32_t count) {
  std::string bytes = BigEndian(count);
  for (std::uint32_t i = 0; i < count; ++i) bytes.append(text_.Table()).append(1, '\0');
  return bytes;
}

}  // namespace zaf::bench
