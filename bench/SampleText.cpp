#include "bench/SampleText.h"

namespace zaf::bench {
namespace {

constexpr std::string_view kWords[] = {
    "a",     "account", "agent",  "all",   "an",    "answer", "before", "book",   "by",
    "card",  "changed", "check",  "copy",  "days",  "day",    "every",  "for",    "from",
    "get",   "have",    "is",     "last",  "line",  "list",   "mail",   "may",    "member",
    "new",   "now",     "office", "on",    "order", "our",    "please", "prices", "request",
    "sales", "saved",   "send",   "since", "soon",  "start",  "thank",  "the",    "their",
    "three", "time",    "to",     "today", "until", "visit",  "was",    "we",     "will",
    "with",  "within",  "year",   "you",   "your",  "paid",   "open",   "total",  "number"};
constexpr std::string_view kLatinWords[] = {"caf\xE9", "r\xE9sum\xE9", "M\xFCller", "na\xEFve",
                                            "gar\xE7on"};
constexpr std::string_view kTitles[] = {"Order entry", "Guest book",    "Library",
                                        "Price list",  "Staff records", "Event calendar"};
constexpr std::string_view kSubjects[] = {"Orders", "Books",  "Members",   "Rooms", "Loans",
                                          "Prices", "Events", "Customers", "Items", "Staff"};
constexpr std::string_view kTables[] = {"DBO.ORDERS", "DBO.CUSTOMERS", "books",     "members",
                                        "loans",      "DBO.STAFF",     "price list"};
constexpr std::string_view kColumns[] = {"ORDER_NO", "CUSTOMER_NO", "TOTAL", "title",     "isbn",
                                         "year",     "last_name",   "email", "ENTERED_ON"};
constexpr std::string_view kOperators[] = {" = ", " > ", " < ", " != "};
constexpr std::string_view kLineEnds[] = {"\r\n", "\r\n", "\r\n", "\r", "\n"};

}  // namespace

TRandom::TRandom(std::uint64_t seed) : state_(seed * 0x9E3779B97F4A7C15U + 0x632BE59BD9B4E019U) {}

std::uint32_t TRandom::Below(std::uint32_t bound) {
  state_ ^= state_ >> 12;
  state_ ^= state_ << 25;
  state_ ^= state_ >> 27;
  const std::uint64_t high = (state_ * 0x2545F4914F6CDD1DU) >> 32;
  return static_cast<std::uint32_t>((high * bound) >> 32);
}

std::string_view TRandom::Pick(std::span<const std::string_view> choices) {
  return choices[Below(static_cast<std::uint32_t>(choices.size()))];
}

TSampleText::TSampleText(TRandom& random)
    : random_(random), line_end_(random.Pick(kLineEnds)), title_(random.Pick(kTitles)) {}

std::string_view TSampleText::Subject() { return random_.Pick(kSubjects); }
std::string_view TSampleText::Table() { return random_.Pick(kTables); }
std::string_view TSampleText::Column() { return random_.Pick(kColumns); }

std::string TSampleText::Words(std::uint32_t count) {
  std::string words;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (i > 0) words += ' ';
    words += random_.Below(40) == 0 ? random_.Pick(kLatinWords) : random_.Pick(kWords);
  }
  return words;
}

std::string TSampleText::Sentence(std::uint32_t size) {
  std::string text;
  while (text.size() < size) {
    if (!text.empty()) text += random_.Chance(30) ? line_end_ : " ";
    text += Words(4 + random_.Below(8)) + '.';
  }
  return text;
}

std::string TSampleText::Number() { return std::to_string(random_.Below(1000)); }

std::string TSampleText::Value() {
  switch (random_.Below(4)) {
    case 0:
      return "<@FIELD NAME=\"" + std::string(Column()) + "\">";
    case 1:
      return "<@VAR NAME=" + std::string(Column()) + ">";
    case 2:
      return Number();
    default:
      return Words(1 + random_.Below(3));
  }
}

std::string TSampleText::Expression() {
  std::string expression = "<@VAR NAME=";
  expression.append(Column()).append(">").append(random_.Pick(kOperators)).append(Value());
  return expression;
}

void TSampleText::AppendRows(std::string& page) {
  page.append("<TABLE BORDER=0 CELLPADDING=2>").append(line_end_).append("<@LIST>");
  page.append(line_end_).append("<TR>");
  for (std::uint32_t i = 2 + random_.Below(4); i > 0; --i)
    page.append("<TD>\t<@COLUMN NAME=\"")
        .append(Table())
        .append(".")
        .append(Column())
        .append("\"></TD>");
  page.append("</TR>").append(line_end_).append("</@LIST>").append(line_end_).append("</TABLE>");
}

void TSampleText::AppendPart(std::string& page) {
  switch (random_.Below(7)) {
    case 0:
      return AppendRows(page);
    case 1:
      page.append("<A HREF=\"<@APPFILEPATH>detail.zaf?id=<@COLUMN NAME='")
          .append(Column())
          .append("'>&amp;start=<@VAR NAME=start>\">")
          .append(Words(3))
          .append("</A>&nbsp;|&nbsp;");
      return;
    case 2:
      page.append(Words(2))
          .append(": <INPUT TYPE=TEXT NAME=\"")
          .append(Column())
          .append("\" VALUE=\"<@COLUMN NAME='")
          .append(Column())
          .append("'>\" SIZE=30>");
      return;
    case 3:
      page.append("<@IF EXPR=\"")
          .append(Expression())
          .append("\">")
          .append(Words(4))
          .append("<@ELSE>")
          .append(Words(3))
          .append("</@IF>");
      return;
    case 4:
      // Some scripts contain the end mark of a CDATA section.
      page.append("<SCRIPT>")
          .append(line_end_)
          .append("<!--")
          .append(line_end_)
          .append(random_.Chance(30) ? "if (a[b[0]]>1" : "if (rows > 1")
          .append(" && form.value == '') return false;")
          .append(line_end_)
          .append("// -->")
          .append(line_end_)
          .append("</SCRIPT>");
      return;
    default:
      page.append("<P>").append(Words(8 + random_.Below(20))).append(".</P>");
      return;
  }
}

std::string TSampleText::Html(std::uint32_t size) {
  std::string page = "<HTML>";
  page.append(line_end_).append("<HEAD><TITLE>").append(title_).append("</TITLE></HEAD>");
  page.append(line_end_).append("<BODY BGCOLOR=\"#FFFFFF\">").append(line_end_);
  page.append("<H1>").append(Subject()).append("</H1>").append(line_end_);
  while (page.size() + 16 < size) {
    AppendPart(page);
    page += line_end_;
  }
  return page.append("</BODY>").append(line_end_).append("</HTML>").append(line_end_);
}

}  // namespace zaf::bench
