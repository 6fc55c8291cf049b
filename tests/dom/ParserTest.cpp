#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "tests/dom/ParsedText.h"

namespace dom {
namespace {

using std::operator""s;
using std::operator""sv;

struct ParserCase {
  const char* name;
  std::string_view input;
  std::string_view output;  ///< "(null)": refused.
};

class Parser : public testing::TestWithParam<ParserCase> {};

TEST_P(Parser, Reads) { EXPECT_EQ(Reserialized(GetParam().input), GetParam().output); }

constexpr std::string_view kRefused = "(null)";

constexpr ParserCase kBesideTheRoot[] = {
    {"Empty",                        "",                                             kRefused          },
    {"WhiteSpace",                   " \n",                                          kRefused          },
    {"NoTag",                        "text",                                         kRefused          },
    {"LoneEnd",                      ">",                                            kRefused          },
    {"NoElement",                    "<!--c--><?p?>",                                kRefused          },
    {"SecondElement",                "<a/><b/>",                                     kRefused          },
    {"TextInFront",                  "x<a/>",                                        kRefused          },
    {"TextBehind",                   "<a/>x",                                        kRefused          },
    {"TextBehindThatEndsLikeATag",   "<a/>x>",                                       kRefused          },
    {"TextBehindThatIsTheEndOfATag", "<a></a> >\n",                                  kRefused          },
    {"EmptyTagBehind",               "<a/>\n<>\n",                                   kRefused          },
    {"ReferenceBehind",              "<a/>&#32;",                                    kRefused          },
    {"CDATABehind",                  "<a/><![CDATA[]]>",                             kRefused          },
    {"NulBehind",                    "<a/>\0"sv,                                     kRefused          },
    {"NulAndMoreBehind",             "<a/>\0<b>"sv,                                  kRefused          },
    {"NulInText",                    "<a>x\0</a>"sv,                                 kRefused          },
    {"LessThanBehind",               "<a/><",                                        kRefused          },
    {"WhiteSpaceAround",             " \r\n<a/>\t\n",                                "<a/>\n"          },
    {"CommentAndInstructionAround",  "<?p x?> <!-- > --><a/><!--d--> <?q?>",         "<a/>\n"          },
    {"DocumentType",                 "<!DOCTYPE a [<!ENTITY e '<b>'>]>\n<a>&e;</a>", "<a>&amp;e;</a>\n"},
};

constexpr ParserCase kTags[] = {
    {"NotClosed",              "<a>",                                      kRefused                     },
    {"NotClosedInside",        "<a><b></a>",                               kRefused                     },
    {"ClosedTwice",            "<a/></a>",                                 kRefused                     },
    {"ClosedByAnotherName",    "<a></b>",                                  kRefused                     },
    {"UnfinishedTag",          "<a",                                       kRefused                     },
    {"UnfinishedComment",      "<a><!-- </a>",                             kRefused                     },
    {"UnfinishedCDATA",        "<a><![CDATA[ </a>",                        kRefused                     },
    {"UnfinishedDocumentType", "<!DOCTYPE a [<a/>",                        kRefused                     },
    {"AttributeWithoutValue",  "<a b/>",                                   kRefused                     },
    {"AttributeWithoutQuotes", "<a b=c/>",                                 kRefused                     },
    {"NamesOfHighBytes",       "<?xml encoding='latin1'?><\xE9 \xE8=''/>", "<\xE9 \xE8=\"\"/>\n"        },
    {"CommentBetweenTexts",    "<a>t<!--c-->u</a>",                        "<a>tu</a>\n"                },
    {"LineEndsInText",         "<a>1\r\n2\r3\n4\r\r\n</a>",                "<a>1\n2\n3\n4\n\n</a>\n"    },
    {"LineEndsInCDATA",        "<a><![CDATA[1\r\n2\r]]></a>",              "<a><![CDATA[1\n2\n]]></a>\n"},
    {"WhiteSpaceInAttribute",  "<a b='1\r\n2\t3\n'/>",                     "<a b=\"1 2 3 \"/>\n"        },
    {"EndOfTagInAttribute",    "<a b='>'/>",                               "<a b=\"&gt;\"/>\n"          },
};

constexpr ParserCase kReferences[] = {
    {"NotInCDATA",      "<a>&lt;<![CDATA[&lt;]]></a>",                    "<a>&lt;<![CDATA[&lt;]]></a>\n"         },
    {"Numbers",         "<a>&#65;&#x41;&#x4a;&#x4A;&#255;</a>",           "<a>AAJJ\xFF</a>\n"                     },
    {"LeadingZeros",    "<a>&#00000000000000000000065;</a>",              "<a>A</a>\n"                            },
    {"Above255",        "<a>&#256;&#xD800;&#x10FFFF;&#x110000;</a>",      "<a>???\?</a>\n"                        },
    {"AboveAllNumbers", "<a>&#4294967361;&#xFFFFFFFFFFFFFFFFFFFF41;</a>", "<a>?\?</a>\n"                          },
    {"Nul",             "<a b='&#0;'>x&#x0;y</a>",                        "<a b=\"\0\">x\0y</a>\n"sv              },
    {"NoNumber",        "<a>&#;&#x;&#a;&#6a;&#xg;&#X41;</a>",
     "<a>&amp;#;&amp;#x;&amp;#a;&amp;#6a;&amp;#xg;&amp;#X41;</a>\n"                                               },
    {"Unfinished",      "<a b='&#65' c='&' d='&#'>&lt</a>",
     "<a b=\"&amp;#65\" c=\"&amp;\" d=\"&amp;#\">&amp;lt</a>\n"                                                   },
    {"OtherNames",      "<a>&LT;&nbsp;& &</a>",                           "<a>&amp;LT;&amp;nbsp;&amp; &amp;</a>\n"},
    {"ExpandedOnce",    "<a>&amp;lt;&#38;lt;&&lt;</a>",                   "<a>&amp;lt;&amp;lt;&amp;&lt;</a>\n"    },
    {"LineEndsStay",    "<a b='&#13;&#10;'>&#13;&#10;</a>",               "<a b=\"&#13;&#10;\">\r\n</a>\n"        },
};

constexpr ParserCase kEncodings[] = {
    {"Latin1",                     "<?xml version='1.0' encoding = \"iso-8859-1\" ?><a>\xE9\xC3\xA9</a>",
     "<a>\xE9\xC3\xA9</a>\n"                                                                                                             },
    {"Latin1ByItsOtherName",       "<?xml\tencoding='LATIN1'?><a>\xE9</a>",                               "<a>\xE9</a>\n"                },
    {"Latin1BehindAMark",          "\xEF\xBB\xBF<?xml encoding='latin1'?><a>\xE9</a>",                    "<a>\xE9</a>\n"                },
    {"DeclaredAtTheFrontOnly",     " <?xml encoding='latin1'?><a>\xE9</a>",                               "<a>?</a>\n"                   },
    {"DeclaredInADeclarationOnly", "<?xmlx encoding='latin1'?><a>\xE9</a>",                               "<a>?</a>\n"                   },
    {"DeclaredWithoutQuotes",      "<?xml encoding=latin1?><a>\xE9</a>",                                  "<a>?</a>\n"                   },
    {"Utf8ByDefault",              "<a b='\xC3\xA9'>\xC2\x80x\xC3\xBF</a>",                               "<a b=\"\xE9\">\x80x\xFF</a>\n"},
    {"Utf8Declared",               "<?xml encoding='UTF-8'?><a>\xC3\xA9</a>",                             "<a>\xE9</a>\n"                },
    {"Utf8ByMark",                 "\xEF\xBB\xBF<a>\xC3\xA9</a>",                                         "<a>\xE9</a>\n"                },
    {"Utf8OfWhatLooksLikeAMark",   "\xC3\xAF\xC2\xBB\xC2\xBF<a/>",                                        kRefused                       },
    {"Utf8AboveLatin1",            "<a>\xC4\x80\xE2\x82\xAC\xF0\x9F\x98\x80</a>",                         "<a>??\?</a>\n"                },
 // The Unicode Standard, chapter 3, tables 3-8 to 3-11.
    {"NonShortest",                "<a>\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41</a>",                         "<a>????????A</a>\n"           },
    {"Surrogates",                 "<a>\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41</a>",                         "<a>????????A</a>\n"           },
    {"OtherIllFormed",             "<a>\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42</a>",                         "<a>?????A??B</a>\n"           },
    {"Truncated",                  "<a>\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41</a>",                         "<a>????A</a>\n"               },
    {"Utf16Big",                   "\xFE\xFF\0<\0a\0>\0\xE9\x20\xAC\0<\0/\0a\0>"sv,                       "<a>\xE9?</a>\n"               },
    {"Utf16Little",                "\xFF\xFE<\0a\0>\0\xE9\0\xAC\x20<\0/\0a\0>\0"sv,                       "<a>\xE9?</a>\n"               },
    {"Utf16Surrogates",            "\xFE\xFF\0<\0a\0>\xD8\0\xDC\0\xDC\0\xD8\0\0<\0/\0a\0>"sv,             "<a>??\?</a>\n"                },
    {"Utf16CutOff",                "\xFE\xFF\0<\0a\0/\0>\0"sv,                                            kRefused                       },
    {"Utf16IgnoresTheDeclaration", "\xFE\xFF\0<\0?\0x\0m\0l\0?\0>\0<\0a\0/\0>"sv,                         "<a/>\n"                       },
    {"Utf32Big",                   "\0\0\xFE\xFF\0\0\0<\0\0\0a\0\0\0/\0\0\0>"sv,                          "<a/>\n"                       },
    {"Utf32Little",
     "\xFF\xFE\0\0<\0\0\0a\0\0\0>\0\0\0\xE9\0\0\0\0\xD8\0\0\xFF\xFF\xFF\xFF"
     "<\0\0\0/\0\0\0a\0\0\0>\0\0\0"sv,                                                                    "<a>\xE9?\?</a>\n"             },
    {"Utf16WithoutMark",           "<\0a\0/\0>\0"sv,                                                      kRefused                       },
};

// White space is a text of elements without child elements; in others it is layout.
constexpr ParserCase kWhiteSpaceInElements[] = {
    {"Alone",                    "<a>\n <b> </b>\n</a>",                                             "<a>\n  <b> </b>\n</a>\n" },
    {"AroundComment",            "<a>\n <!--c-->\n <b/>\n</a>",                                      "<a>\n  <b/>\n</a>\n"     },
    {"InFrontOfCDATA",           "<a> <![CDATA[x]]></a>",                                            "<a> <![CDATA[x]]></a>\n" },
    {"BehindCDATA",              "<a><![CDATA[x]]>\t</a>",                                           "<a><![CDATA[x]]>\t</a>\n"},
    {"BetweenCDATA",             "<a><![CDATA[x]]><![CDATA[!]]> <![CDATA[y]]></a>",
     "<a><![CDATA[x]]><![CDATA[!]]> <![CDATA[y]]></a>\n"                                                                       },
    {"InFrontOfComment",         "<a> <!--c--></a>",                                                 "<a> </a>\n"              },
    {"BehindComment",            "<a>x<!--c--> </a>",                                                "<a>x </a>\n"             },
    {"BetweenComments",          "<a>x<!--c--> <!--d-->y</a>",                                       "<a>x y</a>\n"            },
    {"BehindCommentsDash",       "<a><!--> <b/>--> </a>",                                            "<a> </a>\n"              },
    {"BesideInstruction",        "<a>x<?p?> <?p?>y</a>",                                             "<a>x y</a>\n"            },
    {"ElementInACommentInFront", "<!-- <b><![CDATA[ --><a>x<!--c--> <!--d-->y</a>",                  "<a>x y</a>\n"            },
    {"ElementInADocumentType",
     "<!DOCTYPE a [<!ENTITY c '<b><![CDATA['>]><a>x<!--c--> <!--d-->y</a>",                          "<a>x y</a>\n"            },
    {"ElementInAnIdentifier",    "<!DOCTYPE a SYSTEM \"x><b><![CDATA[\"><a>x<!--c--> <!--d-->y</a>",
     "<a>x y</a>\n"                                                                                                            },
    {"InstructionInFrontOnly",   "<?p?> <!--c--> <a>\n<b/>\n</a>",                                   "<a>\n  <b/>\n</a>\n"     },
};

const auto kName = [](const auto& test) { return test.param.name; };
INSTANTIATE_TEST_SUITE_P(BesideTheRoot, Parser, testing::ValuesIn(kBesideTheRoot), kName);
INSTANTIATE_TEST_SUITE_P(Tags, Parser, testing::ValuesIn(kTags), kName);
INSTANTIATE_TEST_SUITE_P(WhiteSpace, Parser, testing::ValuesIn(kWhiteSpaceInElements), kName);
INSTANTIATE_TEST_SUITE_P(References, Parser, testing::ValuesIn(kReferences), kName);
INSTANTIATE_TEST_SUITE_P(Encodings, Parser, testing::ValuesIn(kEncodings), kName);

// No byte behind the end is read or written, wherever that is: the buffer has no spare byte.
TEST(ParserOfDamage, RefusesEachTruncatedLength) {
  const std::string whole =
      "\xEF\xBB\xBF<?xml encoding='UTF-8'?><!DOCTYPE a><a b='&#233;'><![CDATA[\xC3\xA9]]>"
      "<b>&lt;\xE2\x82\xAC</b><!--c--></a>";
  EXPECT_NE(Reserialized(whole), kRefused);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    std::vector<char> text(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_FALSE(DOMImplementation::createDocument(std::span<char>(text))) << length;
  }
}

// Whatever is accepted is written in a way that is read as the same again.
TEST(ParserOfDamage, ReadsWhatWasWrittenOfDamagedText) {
  constexpr std::string_view kDeclaration = "<?xml encoding='latin1'?>";
  const std::string whole =
      "<?xml encoding='latin1'?><a b='&#38;&quot;'><c><![CDATA[]]]]></c>t&#13;<d e=''/>"
      "<!-- --></a>";
  constexpr std::string_view kCharacters = "<>&;#'\"/![]-?=\0\t\r\n aA1\xE9"sv;
  std::mt19937 random(1);
  int accepted = 0;
  for (int round = 0; round < 20'000; ++round) {
    std::string text = whole;
    for (int i = 0; i < 2; ++i)
      text[random() % text.size()] = kCharacters[random() % kCharacters.size()];
    const std::string once = Reserialized(text);
    if (once == kRefused) continue;
    ++accepted;
    const std::string twice = Reserialized(Join({kDeclaration, once}));
    ASSERT_EQ(Reserialized(Join({kDeclaration, twice})), twice) << text;
  }
  EXPECT_GT(accepted, 1000);
}

TEST(Parser, TextsStayInTheBuffer) {
  std::string text = "<a b='1'>two</a>";
  const Document document =
      DOMImplementation::createDocument(std::as_writable_bytes(std::span(text)));
  const Element root = document.getDocumentElement();
  EXPECT_EQ(root.getTextContent().data(), text.data() + text.find("two"));
  EXPECT_EQ(root.getAttribute("b").data(), text.data() + text.find('1'));
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
  EXPECT_TRUE(
      attributes->getDocumentElement().hasAttribute(Join({"b", std::to_string(kMany - 1)})));

  ParsedText children(Join({"<a>", Repeat("<b/>&amp;", kMany), "</a>"}));
  NodeList list = children->getDocumentElement().getChildNodes();
  ASSERT_EQ(list.getLength(), 2 * kMany);
  for (std::size_t i = 0; i < list.getLength(); ++i) ASSERT_TRUE(list.item(i));

  EXPECT_EQ(Reserialized(Join({Repeat("<!--c--> ", kMany), "<a/>"})), "<a/>\n");
  EXPECT_EQ(Reserialized(Join({"<a>", Repeat("\xC3\xA9\xFF", kMany), "</a>"})).size(),
            2 * kMany + 8);
}

}  // namespace
}  // namespace dom
