#include <gtest/gtest.h>
#include <numeric>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "appfile/CommonSubsequence.h"
#include "appfile/Differences.h"
#include "appfile/TElementComparison.h"
#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

/// Each difference as "SUBJECT FIELD: KIND FROM -> TO".
class TLines final : public TDifferenceObserver {
 public:
  void OnDifference(const TDifference& difference) override {
    constexpr const char* kKinds[] = {"changed", "added", "removed", "moved", "reordered"};
    const auto text = [](std::optional<std::string_view> value) {
      return value ? std::string(*value) : "-";
    };
    lines.push_back(std::string(difference.subject) + " " + std::string(difference.field) + ": " +
                    kKinds[static_cast<int>(difference.kind)] + " " + text(difference.from) +
                    " -> " + text(difference.to));
  }

  std::vector<std::string> lines;
};

std::vector<std::string> Differences(std::string_view one, std::string_view two,
                                     DifferenceScope scope = DifferenceScope::kXmlForm) {
  const test::TLoadedFile file(one), other(two);
  TLines observer;
  FindDifferences(file.GetApplication(), other.GetApplication(), scope, observer);
  return observer.lines;
}

using TLineList = std::vector<std::string>;

/// A document of groups, described by "A(B)C": A is the parent of B, and C follows A.
std::string Tree(std::string_view names) {
  std::string actions;
  std::string program;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (names[i] == ')') program += "</ActionRef>";
    if (names[i] == '(' || names[i] == ')') continue;
    actions.append("<GroupAction ID=\"").append(1, names[i]).append("\"/>");
    program.append("<ActionRef Ref=\"").append(1, names[i]).append("\"");
    program.append(names.substr(i + 1).starts_with('(') ? ">" : "/>");
  }
  return test::DocumentWith(actions, program);
}

TEST(Differences, TellWhereActionsAreInTheOrderOfTheTree) {
  const struct {
    std::string one;
    std::string two;
    TLineList lines;
  } cases[] = {
      {"A(BC)D", "A(BC)D", {}},
      {"", "AB", {"A : added - -> GroupAction", "B : added - -> GroupAction"}},
      {"A(B)C", "C", {"A : removed GroupAction -> -", "B : removed GroupAction -> -"}},
      {"AC", "ABC", {"B : added - -> GroupAction"}},
      {"A(B)C", "AB(C)", {"B : moved A -> -", "C : moved - -> B"}},
      {"ABCDE", "EABCD", {"E : reordered D -> -"}},
      {"ABCDE", "BCADE", {"A : reordered - -> C"}},
      {"A(BC)", "XA(CB)", {"X : added - -> GroupAction", "B : reordered - -> C"}},
      // Of one name: those below the same parent are the same.
      {"A(X)B(X)", "A()B(X)", {"X : removed GroupAction -> -"}},
      {"A(X)B", "AB(XX)", {"X : moved A -> B", "X : added - -> GroupAction"}},
  };
  for (const auto& [one, two, lines] : cases)
    EXPECT_EQ(Differences(Tree(one), Tree(two)), lines) << one << " " << two;
}

TEST(Differences, TellFieldsAsDocumentsHaveThem) {
  const auto document = [](std::string_view search, std::string_view content,
                           std::string_view rest) {
    return test::DocumentWith(
        "<SearchAction ID=\"S\" DSID=\"d\" DeploymentDSID=\"d\" " + std::string(search) + ">" +
            std::string(content) + "</SearchAction>" + std::string(rest),
        "<ActionRef Ref=\"S\"/>",
        "<DataSource ID=\"d\"><DSN>" + std::string(search.substr(0, 1)) + "</DSN></DataSource>",
        "<Output ID=\"o\">" + std::string(search.substr(0, 2)) + "</Output>");
  };
  const auto tables = [](std::string_view names) {
    std::string list;
    for (const char name : names) list += std::string("<TableName>") + name + "</TableName>";
    return "<Tables>" + list + "</Tables>";
  };
  const auto criterion = [](std::string_view column, std::string_view op) {
    return "<CriteriaItem><ColumnName>" + std::string(column) + "</ColumnName><Operator>" +
           std::string(op) + "</Operator></CriteriaItem>";
  };
  const auto criteria = [&](const std::string& items) {
    return "<Criteria>" + items + "</Criteria>";
  };
  const auto assigns = [](std::string_view items) {
    return "<AssignAction ID=\"X\">" + std::string(items) + "</AssignAction>";
  };
  const struct {
    std::string one;
    std::string two;
    TLineList lines;
  } cases[] = {
      {document("TotalRows=\"True\"", "<MaxRows>7</MaxRows>", {}),
       document("PushResults=\"True\"", "<MaxRows>8</MaxRows><ResultsOutput Ref=\"o\"/>", {}),
       {"S TotalRows: removed True -> -", "S PushResults: added - -> True",
        "S MaxRows: changed 7 -> 8", "S ResultsOutput: added - -> Pu",
        "S DSID.DSN: changed T -> P"}},
      {document({}, tables("abcd"), {}),
       document({}, tables("xacyd"), {}),
       {"S Tables[1]: added - -> x", "S Tables[2]: removed b -> -", "S Tables[4]: added - -> y"}},
      {document({}, {}, {}), document({}, tables("a"), {}), {"S Tables[1]: added - -> a"}},
      {document({}, criteria(criterion("a", "eq") + criterion("b", "eq") + criterion("c", "eq")),
                {}),
       document({}, criteria(criterion("a", "eq") + criterion("b", "lt")), {}),
       {"S Criteria[2].Operator: changed eq -> lt",
        "S Criteria[3]: removed ColumnName: c, Operator: eq -> -"}},
      {document({}, {}, "<ResultAction ID=\"X\"/>"),
       document({}, {}, "<IfAction ID=\"X\"/>"),
       {"X : changed ResultAction -> IfAction"}},
      {document({}, {}, assigns("<Cookie><Name>n</Name></Cookie>")),
       document({}, {}, assigns("<AssignItem><Name>n</Name></AssignItem>")),
       {"X ResultsOutput: changed <@ASSIGN SCOPE=Cookie NAME=n VALUE=\"\"  PATH=\"\"  "
        "SECURE=\"no\" > -> "
        "<@ASSIGN SCOPE= NAME=n VALUE=\"\">",
        "X Cookie[1]: removed Name: n -> -", "X AssignItem[1]: added - -> Name: n"}},
  };
  for (const auto& [one, two, lines] : cases) EXPECT_EQ(Differences(one, two), lines) << two;
}

TEST(Differences, AreNoneBetweenAFileAndItsDocument) {
  // Content without XML form, or with a different one.
  test::LegacyFile file;
  file.Text("titl", "T").Text("form", "carried").Action("if  ", "I");
  file.Text("cmnt", "one\r\ntwo\rthree").Action("else", "E");
  const std::string legacy = file.Action("goto", "G\x01").Payload("comp", "code").Bytes();
  const std::string document = test::ToXml(legacy);
  EXPECT_EQ(Differences(legacy, document), TLineList{});
  EXPECT_EQ(
      Differences(legacy, document, DifferenceScope::kEverything),
      (TLineList{
          std::string("ZAF 'form': removed carried") + '\0' + " -> -",
          std::string("I 'cmnt': changed one\r\ntwo\rthree") + '\0' + " -> one\ntwo\nthree" + '\0',
          "E : moved - -> I", "G\x01 'comp': removed code -> -", "G\x01 ID: changed G\x01 -> G"}));
  const std::string other = test::ToXml(test::LegacyFile().Text("titl", "U").Bytes());
  EXPECT_EQ(Differences(test::LegacyFile().Text("titl", "T").Bytes(), other),
            TLineList{"ZAF Title: changed T -> U"});
}

TEST(Differences, HideThePasswordsOfLegacyFiles) {
  // This action has no data source in the XML form.
  const auto lines = [](std::string_view one, std::string_view two) {
    const auto file = [](std::string_view password) {
      return test::LegacyFile().Action("endt", "E").Text("pass", password).Bytes();
    };
    return Differences(file(one), file(two), DifferenceScope::kEverything);
  };
  EXPECT_EQ(lines("a", "a"), TLineList{});
  EXPECT_EQ(lines("a", "b"), TLineList{"E 'pass': changed (hidden) -> (another one, hidden)"});
}

TEST(Differences, KnowTheListsOfTheGrammar) {
  const std::string grammar = test::ReadFile(ZAF2XML_SAMPLES "/../share/zanfo.dtd");
  const std::regex declaration(R"((?:ELEMENT|ENTITY %) ([\w-]+)\s+["(]([^>]*)[")]>)");
  const std::regex repeated(R"((\w+)[*+]|(\w+) \| (\w+)\)\*)");
  std::size_t lists = 0;
  for (std::sregex_iterator at(grammar.begin(), grammar.end(), declaration), end; at != end; ++at) {
    const std::string name = (*at)[1];
    const std::string content = (*at)[2];
    if (std::set<std::string>{"Program", "ActionRef", "DataSources", "Outputs", "Actions"}.contains(
            name))
      continue;
    const bool is_list = std::regex_match(content, std::regex(R"(\w+\*)"));
    EXPECT_EQ(IsListElement(name), is_list) << name;
    if (is_list) {
      ++lists;
      continue;
    }
    for (std::sregex_iterator item(content.begin(), content.end(), repeated); item != end; ++item)
      for (const auto& part : {(*item)[1], (*item)[2], (*item)[3]})
        EXPECT_TRUE(!part.matched || IsItemElement(part.str())) << part;
  }
  EXPECT_EQ(lists, 18U);
}

TEST(CommonSubsequence, IsLongestUnlessTooMuchIsRepeated) {
  const auto pairs = [](std::vector<std::uint32_t> one, std::vector<std::uint32_t> two) {
    std::string text;
    for (const TIndexPair& pair : FindCommonSubsequence(one, two))
      text += std::to_string(pair.one) + std::to_string(pair.two) + " ";
    return text;
  };
  EXPECT_EQ(pairs({}, {1}), "");
  EXPECT_EQ(pairs({1, 2, 3}, {1, 2, 3}), "00 11 22 ");
  EXPECT_EQ(pairs({1, 2, 3, 4}, {9, 1, 3, 8, 4}), "01 22 34 ");
  EXPECT_EQ(pairs({1, 1, 2}, {1, 2, 1, 2}), "00 12 23 ");
  EXPECT_EQ(pairs({1, 2, 1, 3}, {2, 1, 3, 1}), "10 21 32 ");
  // Time is linear in the length: with distinct elements, and with one that is repeated.
  std::vector<std::uint32_t> one(200'000);
  std::iota(one.begin(), one.end(), 1);
  std::vector<std::uint32_t> two(one.begin() + 3, one.end());
  two.push_back(1);
  EXPECT_EQ(FindCommonSubsequence(one, two).size(), one.size() - 3);
  std::fill(one.begin() + 1, one.end() - 1, 0);
  std::fill(two.begin() + 1, two.end() - 1, 0);
  EXPECT_EQ(FindCommonSubsequence(one, two).size(), two.size() - 2);
}

}  // namespace
}  // namespace zaf
