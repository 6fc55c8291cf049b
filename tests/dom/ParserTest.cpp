#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tests/dom/ParsedText.h"

namespace dom {
namespace {

using std::operator""s;
using std::operator""sv;

constexpr std::string_view kRefused = "(null)";

/// The bytes of a field, in which "\n", "\\" and "\xNN" are escapes.
std::string Unescaped(std::string_view field) {
  std::string bytes;
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] != '\\') {
      bytes += field[i];
    } else if (field[++i] == 'x') {
      bytes += static_cast<char>(std::stoi(std::string(field.substr(i + 1, 2)), nullptr, 16));
      i += 2;
    } else {
      bytes += field[i] == 'n' ? '\n' : '\\';
    }
  }
  return bytes;
}

/// The rows of a table in this folder, whose fields are separated by tabs.
std::vector<std::vector<std::string>> Rows(const std::string& table) {
  std::ifstream file(ZAF2XML_DOM_TABLES "/" + table);
  std::vector<std::vector<std::string>> rows;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('#')) continue;
    std::istringstream fields(line);
    rows.emplace_back();
    for (std::string field; std::getline(fields, field, '\t');)
      rows.back().push_back(Unescaped(field));
  }
  return rows;
}

TEST(Parser, ReadsWhatIsWellFormed) {
  const auto rows = Rows("accepted.tsv");
  EXPECT_GT(rows.size(), 50U);
  for (const auto& row : rows) EXPECT_EQ(Reserialized(row.at(1)), row.at(2)) << row.at(0);
}

TEST(Parser, ReportsWhyAndWhereItRefuses) {
  const auto rows = Rows("refused.tsv");
  EXPECT_GT(rows.size(), 100U);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.at(0));
    ParseReport report;
    EXPECT_FALSE(DOMImplementation::createDocument(std::string_view(row.at(1)), &report));
    EXPECT_EQ(report.GetReason(), row.at(2));
    EXPECT_EQ(std::to_string(report.line), row.at(3));
    EXPECT_EQ(std::to_string(report.column), row.at(4));
    EXPECT_EQ(std::to_string(report.offset), row.at(5));
  }
}

// No byte after the end is read, wherever that is.
TEST(ParserOfDamage, RefusesEachTruncatedLength) {
  const std::string whole =
      "\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8'?><!DOCTYPE a PUBLIC 'p' 's'><?p d?>"
      "<a b='&#233;'><![CDATA[\xC3\xA9]]><b>&lt;\xE2\x82\xAC</b><!--c--></a>";
  EXPECT_NE(Reserialized(whole), kRefused);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const std::vector<char> text(whole.begin(),
                                 whole.begin() + static_cast<std::ptrdiff_t>(length));
    ParseReport report;
    EXPECT_FALSE(DOMImplementation::createDocument(std::span(text), &report)) << length;
    EXPECT_LE(report.offset, length);
  }
}

TEST(Parser, CountsTheCharactersThatItReplaces) {
  ParseReport report;
  EXPECT_TRUE(DOMImplementation::createDocument(
      "<a b='&#256;\xC4\x80\xC3\xBF'><!--\xC4\x80-->\xE2\x82\xAC&#255;</a>"sv, &report));
  EXPECT_EQ(report.replaced_count, 3U);
  EXPECT_EQ(report.fault, ParseFault::kNone);
}

TEST(Parser, TextsStayInTheBuffer) {
  const std::string text = "<a b='1'>two</a>";
  const Document document = DOMImplementation::createDocument(std::as_bytes(std::span(text)));
  const Element root = document.getDocumentElement();
  EXPECT_EQ(root.getTextContent().data(), text.data() + text.find("two"));
  EXPECT_EQ(root.getAttribute("b").data(), text.data() + text.find('1'));
}

// No two texts are neighbours, which would be read as one, and none is blank, which may be layout.
TEST(Parser, ReadsWhatWasWritten) {
  constexpr std::string_view kCharacters = "<>&;#'\"/![]-?= \t\nabcA1\xE9\xFF\x80\x7F"sv;
  std::mt19937 random(1);
  const auto make_text = [&] {
    std::string text = "x";
    for (std::size_t i = random() % 40; i > 0; --i)
      text += kCharacters[random() % kCharacters.size()];
    return text;
  };
  constexpr std::string_view kNames[] = {"a", "a-longer.name_of:1", "\xE9"};
  for (int round = 0; round < 500; ++round) {
    const Document document = DOMImplementation::createDocument();
    Element element = document.createElement("root");
    document.appendChild(element);
    for (std::size_t i = random() % 30; i > 0; --i) {
      const std::string text = make_text();
      const bool is_after_text = static_cast<bool>(Text(element.getLastChild()));
      const auto kind = random() % 5;
      if (kind == 0) element = element.appendElement(kNames[random() % 3]);
      if (kind == 1 && !is_after_text) element.appendText(text);
      if (kind == 2 && text.find("]]>") == text.npos) element.appendCDATASection(text);
      if (kind == 3) element.setAttribute(kNames[random() % 3], text + "\r");
      if (kind == 4 && element != document.getDocumentElement())
        element = Element(element.getParentNode());
    }
    const std::string written =
        Join({"<?xml version='1.0' encoding='ISO-8859-1'?>", Serialized(document)});
    ASSERT_EQ(Reserialized(written), Serialized(document));
  }
}

constexpr std::size_t kDeep = 200'000;
constexpr std::size_t kMany = 1'000'000;

TEST(HostileText, NestedDeeply) {
  ParsedText parsed(Join({Repeat("<a>", kDeep), "x", Repeat("</a>", kDeep)}));
  ASSERT_TRUE(*parsed);
  const std::string output = Serialized(*parsed);
  EXPECT_GT(output.size(), kDeep * 2 * 64);
  EXPECT_LT(output.size(), kDeep * 2 * 70);
  EXPECT_EQ(
      Reserialized(Join({"<b>t", Repeat("<a>", kDeep), Repeat("</a>", kDeep), "</b>"})).size(),
      kDeep * 7 + 6);
  EXPECT_FALSE(*ParsedText(Repeat("<a>", kDeep)));
  // Taken out and destroyed with the document.
  EXPECT_TRUE(parsed->removeChild(parsed->getDocumentElement()));
}

TEST(HostileText, ManyOfEverything) {
  std::string text = "<a";
  for (std::size_t i = 0; i < kMany; ++i) text += Join({" b", std::to_string(i), "=''"});
  ParsedText attributes(text + "/>");
  ASSERT_TRUE(*attributes);
  EXPECT_EQ(attributes->getDocumentElement().getAttributes().getLength(), kMany);
  EXPECT_FALSE(*ParsedText(text + " b7=''/>"));

  ParsedText children(Join({"<a>", Repeat("<b/>&amp;", kMany), "</a>"}));
  NodeList list = children->getDocumentElement().getChildNodes();
  ASSERT_EQ(list.getLength(), 2 * kMany);
  for (std::size_t i = 0; i < list.getLength(); ++i) ASSERT_TRUE(list.item(i));

  EXPECT_EQ(Reserialized(Join({Repeat("<!--c--> ", kMany), "<a/>"})), "<a/>\n");
  EXPECT_EQ(Reserialized(Join({"<a>", Repeat(" <!--c-->", kMany), "<b/></a>"})),
            "<a>\n  <b/>\n</a>\n");
  EXPECT_EQ(Reserialized(Join({"<a>", Repeat("\xC3\xA9]", kMany), "</a>"})).size(), 2 * kMany + 8);
}

}  // namespace
}  // namespace dom
