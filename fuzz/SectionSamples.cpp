#include "fuzz/SectionSamples.h"

#include <cstdio>
#include <initializer_list>
#include <utility>

#include "fields/ValueCodecs.h"
#include "tests/support/LegacyFile.h"

namespace zaf::fuzz {
namespace {

using test::BigEndian;
using test::ListOf;
using test::Slot;

using TVariants = std::vector<std::string>;

/// Bytes with fields at their offsets and zeros elsewhere.
std::string Record(std::size_t size,
                   std::initializer_list<std::pair<std::size_t, std::string_view>> fields) {
  std::string record(size, '\0');
  for (const auto& [offset, bytes] : fields) record.replace(offset, bytes.size(), bytes);
  return record;
}

std::string Terminated(std::string_view text) { return std::string(text) + '\0'; }

/// Lists of one record each.
TVariants Lists(std::initializer_list<std::string> records) {
  TVariants lists;
  for (const std::string& record : records) lists.push_back(ListOf(1, record));
  return lists;
}

/// Texts that are plain, that are markup, and that lose a character.
TVariants Texts(std::string_view code) {
  return {Terminated(std::string(code) + " text"), Terminated("<b a='1'>]]>&\"\r\n\t\xE9 </b>"),
          Terminated("\x01\n")};
}

TVariants Numbers() { return {BigEndian(1), BigEndian(2), BigEndian(0xFFFFFFFF)}; }

TVariants Codes(std::initializer_list<std::string_view> codes) {
  return {codes.begin(), codes.end()};
}

TVariants Criteria() {
  return Lists({
      Record(1024, {{0, "and"},
                    {128, "eq"},
                    {256, "c"},
                    {384, "t"},
                    {512, "v"},
                    {640, "n"},
                    {768, "true"},
                    {896, "true"}}
       ),
      Record(896, {{0, "or"},    {128, "eq"}, {256, "c"}, {384, "t"}, {512, "v"}, {768, "false"}}
       ),
      Record(448, {{0, "and"},    {32, "eq"}, {64, "c"}, {96, "t"}, {128, "v"}, {416, "true"}}
       ),
      Record(1024, {{0, "or"}}
       ),
  });
}

TVariants Joins() {
  return Lists({
      Record(648, {{0, "c"},       {128, "t"}, {256, "d"}, {384, "u"},              {512, " =* "}, {516, "f"}}
       ),
      Record(646, {{0, "c"},              {128, "t"},                 {256, "d"},    {384, "t"}, {512, " *= "}, {644, "\1"}}
       ),
      Record(168, {{0, "c"},   {32, "t"},             {64, "d"},                {96, "u"},                            {128, " =* "},                    {132, "f"}}
       ),
      Record(648, {{0, "c"}, {128, "t"}, {256, "d"},           {384, "u"},{512, "iseq"}}
       ),
  });
}

/// A builder column: the list items below name it.
std::string BuilderColumn() {
  return Record(524, {
                         {0,   "t"          },
                         {128, "c"          },
                         {256, BigEndian(12)},
                         {260, "\1"         },
                         {264, BigEndian(40)},
                         {268, "o"          },
                         {396, "Title"      }
  });
}

/// The input options of each kind.
TVariants Inputs() {
  const auto options = [](std::string_view kind) {
    return Record(420, {
                           {0,   kind         },
                           {4,   "d"          },
                           {132, BigEndian(20)},
                           {136, BigEndian(1) },
                           {140, BigEndian(64)},
                           {144, "\1\1\1\1"   },
                           {148, "v"          },
                           {280, "select 1"   }
    });
  };
  TVariants inputs;
  for (const std::string_view kind : {"drop", "text", "pick", "radi", "chek", "fixd"})
    inputs.push_back(options(kind));
  inputs.push_back(options("fixd").replace(276, 4, BigEndian(7)));
  return inputs;
}

/// A column with its input of each kind and display options, if any, of each kind.
TVariants InputColumns(std::size_t tail_size) {
  TVariants columns;
  std::uint32_t kind = 0;
  for (const std::string& input : Inputs()) {
    std::string tail = tail_size == 12 ? Slot("eq", tail_size) : std::string(tail_size, '\0');
    if (tail_size > 12)
      tail = Slot(BigEndian(kind++).append(BigEndian(8) + BigEndian(1)) + "p", tail_size);
    columns.push_back(ListOf(1, BuilderColumn().append(input).append(tail)));
  }
  return columns;
}

TVariants ListColumns() {
  TVariants columns;
  for (std::uint32_t kind = 0; kind < 7; ++kind)
    columns.push_back(ListOf(
        1, BuilderColumn() + BigEndian(kind) + BigEndian(kind) + BigEndian(1) + Slot("p", 160)));
  return columns;
}

std::string PageFormat() { return test::Slots(128, {"1", "#000000", "#FFFFFF", "2", "3"}); }

std::string ListItem(std::initializer_list<std::string_view> names) {
  return test::Slots(128, names) + test::Slots(128, {"item", "value"}) + BigEndian(1);
}

std::string AssignItem(std::string_view scope) {
  return BigEndian(5) + "v\r'\"w" + Slot("x", 256) + Slot(scope, 128) + Slot("30", 128) +
         Slot("/", 256) + Slot("d", 256) + BigEndian(1);
}

std::string Parameters(std::string_view events) {
  return std::string(events) + Terminated("target") + ListOf(1, Terminated("n") + Terminated("v"));
}

std::map<FourCharCode, TVariants> Lists() {
  const std::string text_list = ListOf(3, Terminated("one") + Terminated("") + "last");
  const TVariants expressions = Lists({
      Record(512, {{0, "and"}, {128, "1"}, {256, "isgt"},   {384, "2"}}
       ),
      Record(400, {{0, "or"},  {128, "1"}, {256, "is not"}, {384, "2"}}
       ),
  });
  const std::string page_items = ListOf(1, ListItem({"o", "t", "c"}));
  const TVariants assigns = {ListOf(1, AssignItem("cookie")), ListOf(1, AssignItem("Default")),
                             ListOf(2, AssignItem("Cookie") + AssignItem("user"))};
  return {
      {Code("tabl"), {text_list}                                                                                    },
      {Code("vbls"), {text_list, ListOf(0, "")}                                                                     },
      {Code("argu"), {text_list}                                                                                    },
      {Code("cols"), Lists({Record(524, {{0, "t"},
                                         {128, "c"},
                                         {256, BigEndian(4)},
                                         {260, "\1"},
                                         {264, BigEndian(0xFFFFFFFF)},
                                         {268, "r"},
                                         {396, "s"}}),
                            Record(140, {{0, "t"}, {32, "c"}, {64, BigEndian(99)}, {76, "r"}})})},
      {Code("slct"), Lists({Record(384, {{0, "t"}, {128, "c"}, {256, "a"}}),
                            Record(96, {{0, "t"}, {32, "c"}, {64, "a"}})})                      },
      {Code("ordr"), Lists({Record(384, {{0, "t"}, {128, "c"}, {256, "true"}}),
                            Record(96, {{0, "t"}, {32, "c"}, {64, "false"}})})                  },
      {Code("grup"),
       Lists({Record(256, {{0, "t"}, {128, "c"}}), Record(64, {{0, "t"}, {32, "c"}})})                              },
      {Code("valu"), Lists({test::Slots(128, {"c", "v", "n", "true", "true"}),
                            Record(352, {{0, "c"}, {32, "v"}, {288, "n"}, {320, "true"}})})     },
      {Code("lsrt"), Lists({test::Slots(128, {"o", "t", "c"}) + BigEndian(1),
                            test::Slots(32, {"o", "t", "c"}) + BigEndian(1)})                   },
      {Code("ieei"), expressions                                                                                    },
      {Code("weit"), expressions                                                                                    },
      {Code("crit"), Criteria()                                                                                     },
      {Code("have"), Criteria()                                                                                     },
      {Code("join"), Joins()                                                                                        },
      {Code("dltj"), Joins()                                                                                        },
      {Code("scit"), InputColumns(12)                                                                               },
      {Code("lcit"), ListColumns()                                                                                  },
      {Code("dcit"), InputColumns(48)                                                                               },
      {Code("icol"), InputColumns(0)                                                                                },
      {Code("sfvt"), {page_items}                                                                                   },
      {Code("dfvt"), {page_items}                                                                                   },
      {Code("fval"), {ListOf(1, ListItem({"c"}))}                                                                   },
      {Code("spgf"), {PageFormat()}                                                                                 },
      {Code("lpgf"), {PageFormat()}                                                                                 },
      {Code("dpgf"), {PageFormat()}                                                                                 },
      {Code("frmt"), {PageFormat()}                                                                                 },
      {Code("agit"), assigns                                                                                        },
      {Code("assn"), {Slot("n", 32) + Slot("v", 256)}                                                               },
      {Code("assx"), {Slot("n", 32) + Slot("v", 1024)}                                                              },
      {Code("exev"), {Parameters("")}                                                                               },
      {Code("aevx"), {Parameters("")}                                                                               },
      {Code("aevt"), {Parameters("miscdosc")}                                                                       },
      {Code("plat"), Codes({"exev", "aevx", "aevt", "mac ", "none"})                                                },
      {Code("flmd"), Codes({"r", "w", "d", "a", "e", std::string_view("\0\0\0w", 4)})                               },
      {Code("flav"), Codes({"jscr", "vscr", "ascr", "tcl "})                                                        },
      {Code("type"), Codes({"bean", "clas"})                                                                        },
      {Code("htyp"), Codes({"odbc", "psql", "oci ", "FMPm", "dam ", "none"})                                        },
      {Code("goto"), {"block"}                                                                                      },
      {Code("comp"), {"block"}                                                                                      },
      {Code("dnam"), {Terminated("<@APPFILEPATH>/a.zaf"), Terminated("b.zaf")}                                      },
  };
}

}  // namespace

TSectionSamples::TSectionSamples() : samples_(Lists()) {}

bool TSectionSamples::AddRows(std::span<const TProperty> rows) {
  bool is_complete = true;
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    is_complete = AddRows(row.codec->Nested()) && is_complete;
    if (row.code == kNoCode || samples_.contains(row.code)) continue;
    const std::string code(Characters(row.code).data(), 4);
    if (dynamic_cast<const TTextCodecBase*>(row.codec) != nullptr) {
      samples_[row.code] = Texts(code);
    } else if (dynamic_cast<const TValueCodec*>(row.codec) != nullptr) {
      samples_[row.code] = Numbers();
    } else {
      std::fprintf(stderr, "no sample of the section '%s'\n", code.c_str());
      is_complete = false;
    }
  }
  return is_complete;
}

const std::string& TSectionSamples::Get(FourCharCode code, std::size_t variant) const {
  const TVariants& variants = samples_.at(code);
  return variants[variant % variants.size()];
}

}  // namespace zaf::fuzz
