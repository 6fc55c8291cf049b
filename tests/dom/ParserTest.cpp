#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "tests/dom/ParsedText.h"

namespace dom {
namespace {

using std::operator""s;
using std::operator""sv;

constexpr std::string_view kRefused = "(null)";
const auto kName = [](const auto& test) { return test.param.name; };

struct AcceptedCase {
  const char* name;
  std::string_view input;
  std::string_view output;
};

class Accepted : public testing::TestWithParam<AcceptedCase> {};

TEST_P(Accepted, IsRead) { EXPECT_EQ(Reserialized(GetParam().input), GetParam().output); }

constexpr AcceptedCase kDocuments[] = {
    {"WhiteSpaceAround", " \r\n<a/>\t\n", "<a/>\n"},
    {"MiscAround", "<?p x?> <!-- > --><a/><!--d--> <?q?>", "<a/>\n"},
    {"Declaration", "<?xml\tversion = '1.9'\nstandalone='no' ?><a/>", "<a/>\n"},
    {"InstructionLikeXml", "<?xml-style a?><?xm?><?xmlx?><a/>", "<a/>\n"},
    {"DocumentType", "<!DOCTYPE\ta >\n<a/>", "<a/>\n"},
    {"SystemIdentifier", "<!DOCTYPE a SYSTEM '[\"&<>'><a/>", "<a/>\n"},
    {"PublicIdentifier", "<!DOCTYPE a PUBLIC\n\"-'()+,./:=?;!*#@$_%\" ''><a/>", "<a/>\n"},
    {"EndTagWithSpace", "<a ><b\n/></a\r\n>", "<a>\n  <b/>\n</a>\n"},
    {"Names", "<_:A-.9 :='1' xml='2'/>", "<_:A-.9 :=\"1\" xml=\"2\"/>\n"},
    {"LongNames", "<a23456789012345678 b23456789012345678='x'/>",
     "<a23456789012345678 b23456789012345678=\"x\"/>\n"},
    {"CommentBetweenTexts", "<a>t<!--c-->u</a>", "<a>tu</a>\n"},
    {"LineEndsInText", "<a>1\r\n2\r3\n4\r\r\n</a>", "<a>1\n2\n3\n4\n\n</a>\n"},
    {"LineEndsInCDATA", "<a><![CDATA[1\r\n2\r]]></a>", "<a><![CDATA[1\n2\n]]></a>\n"},
    {"BracketsInCDATA", "<a><![CDATA[<]]]>]]&lt;\x7F</a>", "<a><![CDATA[<]]]>]]&lt;\x7F</a>\n"},
    {"BracketsInText", "<a>]] ]>\x7F</a>", "<a>]] ]&gt;\x7F</a>\n"},
    {"WhiteSpaceInAttribute", "<a b = '1\r\n2\t3\n'/>", "<a b=\"1 2 3 \"/>\n"},
    {"QuotesInAttribute", "<a b='\"' c=\"'>\"/>", "<a b=\"&quot;\" c=\"'&gt;\"/>\n"},
    {"PredefinedEntities", "<a b='&lt;&quot;&apos;'>&amp;&gt;</a>",
     "<a b=\"&lt;&quot;'\">&amp;&gt;</a>\n"},
    {"Numbers", "<a>&#65;&#x41;&#x4a;&#x4A;&#255;</a>", "<a>AAJJ\xFF</a>\n"},
    {"LeadingZeros", "<a>&#00000000000000000000065;</a>", "<a>A</a>\n"},
    {"NumbersAbove255", "<a b='&#256;'>&#xD7FF;&#x10FFFF;</a>", "<a b=\"?\">?\?</a>\n"},
    {"ExpandedOnce", "<a>&amp;lt;&#38;lt;</a>", "<a>&amp;lt;&amp;lt;</a>\n"},
    {"LineEndsByNumber", "<a b='&#13;&#10;'>&#13;&#10;</a>", "<a b=\"&#13;&#10;\">\r\n</a>\n"},
    {"EntityOfExternalSubset", "<!DOCTYPE a SYSTEM 'x'><a b='&c;&#65;'>&d.1;</a>",
     "<a b=\"&amp;c;A\">&amp;d.1;</a>\n"},
    // White space is a text of elements without child elements; in others it is layout.
    {"WhiteSpaceAlone", "<a>\n <b> </b>\n</a>", "<a>\n  <b> </b>\n</a>\n"},
    {"WhiteSpaceAroundComment", "<a>\n <!--c-->\n <b/>\n</a>", "<a>\n  <b/>\n</a>\n"},
    {"WhiteSpaceByReference", "<a>&#32;<b/></a>", "<a>\n  <b/>\n</a>\n"},
    {"WhiteSpaceBesideCDATA", "<a> <![CDATA[x]]>\t<![CDATA[y]]>\n</a>",
     "<a> <![CDATA[x]]>\t<![CDATA[y]]>\n</a>\n"},
    {"WhiteSpaceBesideComments", "<a>x<!--c--> <!--d-->y<?p?> </a>", "<a>x y </a>\n"},
    {"WhiteSpaceInMixedContent", "<a>x <b/> <!--c--> <b/> y</a>", "<a>x <b/><b/> y</a>\n"},
};

constexpr AcceptedCase kLayouts[] = {
    {"NoContent", "<a></a>", "<a/>\n"},
    {"OnlyWhiteSpace", "<a> \n</a>", "<a> \n</a>\n"},
    {"EmptyCDATA", "<a><![CDATA[]]></a>", "<a><![CDATA[]]></a>\n"},
    {"SeveralTexts", "<a>t<![CDATA[u]]>v</a>", "<a>t<![CDATA[u]]>v</a>\n"},
    {"ElementsGetLines", "<a><b/><c><d>t</d></c><e/></a>",
     "<a>\n  <b/>\n  <c>\n    <d>t</d>\n  </c>\n  <e/>\n</a>\n"},
    {"TextAmongElementsAddsNothing", "<a><b><c/><d><e/></d></b>t</a>",
     "<a><b><c/><d><e/></d></b>t</a>\n"},
    {"LinesGoOnAfterMixedContent", "<a><b>t<c><d/></c></b><e><f/></e></a>",
     "<a>\n  <b>t<c><d/></c></b>\n  <e>\n    <f/>\n  </e>\n</a>\n"},
    {"CDATAAmongElementsAddsNothing", "<a><b/><![CDATA[]]></a>", "<a><b/><![CDATA[]]></a>\n"},
    {"Attributes", "<a b='1' c=''><d e=\"'\"/></a>", "<a b=\"1\" c=\"\">\n  <d e=\"'\"/>\n</a>\n"},
    {"EscapesInText", "<a>&lt;&gt;&amp;&quot;'\t\n&#13;</a>",
     "<a>&lt;&gt;&amp;&quot;'\t\n\r</a>\n"},
    {"EscapesInAttributes", "<a b='&lt;&gt;&amp;&quot;&apos;&#9;&#10;&#13;'/>",
     "<a b=\"&lt;&gt;&amp;&quot;'&#9;&#10;&#13;\"/>\n"},
};

constexpr AcceptedCase kEncodings[] = {
    {"Latin1", "<?xml version='1.0' encoding = \"iso-8859-1\" ?><\xE9>\xE9\xC3\xA9\x80</\xE9>",
     "<\xE9>\xE9\xC3\xA9\x80</\xE9>\n"},
    {"Latin1BehindAMark", "\xEF\xBB\xBF<?xml version='1.0' encoding='LATIN1'?><a>\xE9</a>",
     "<a>\xE9</a>\n"},
    {"Ascii", "<?xml version='1.0' encoding='us-Ascii'?><a>\x7F</a>", "<a>\x7F</a>\n"},
    {"Utf8ByDefault", "<\xC3\xA9 b='\xC3\xA9'>\xC2\x80x\xC3\xBF</\xC3\xA9>",
     "<\xE9 b=\"\xE9\">\x80x\xFF</\xE9>\n"},
    {"Utf8Declared", "<?xml version='1.0' encoding='UTF-8'?><a>\xC3\xA9</a>", "<a>\xE9</a>\n"},
    {"Utf8ByMark", "\xEF\xBB\xBF<a>\xEF\xBB\xBF</a>", "<a>?</a>\n"},
    {"Utf8AboveLatin1", "<a>\xC4\x80\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBF\xBD</a>",
     "<a>???\?</a>\n"},
    {"NamesAboveLatin1", "<\xCE\xB1 \xCE\xB1='1' \xCE\xB2='2'><a/></\xCE\xB1>",
     "<? ?=\"1\" ?=\"2\">\n  <a/>\n</?>\n"},
    {"NamesOfFifthEdition", "<a\xCC\x80 \xF0\x90\x80\x80\xE2\x80\xBF=''/>", "<a? ?\?=\"\"/>\n"},
    {"Utf16Big", "\xFE\xFF\0<\0a\0>\0\xE9\x20\xAC\xD8\x3D\xDE\0\0<\0/\0a\0>"sv, "<a>\xE9?\?</a>\n"},
    {"Utf16Little", "\xFF\xFE<\0a\0>\0\xE9\0\xAC\x20<\0/\0a\0>\0"sv, "<a>\xE9?</a>\n"},
};

INSTANTIATE_TEST_SUITE_P(Documents, Accepted, testing::ValuesIn(kDocuments), kName);
INSTANTIATE_TEST_SUITE_P(Layouts, Accepted, testing::ValuesIn(kLayouts), kName);
INSTANTIATE_TEST_SUITE_P(Encodings, Accepted, testing::ValuesIn(kEncodings), kName);

struct RefusedCase {
  const char* name;
  std::string_view input;
  ParseFault fault;
  std::size_t line;
  std::size_t column;
  std::size_t offset;
};

class Refused : public testing::TestWithParam<RefusedCase> {};

TEST_P(Refused, SaysWhyAndWhere) {
  ParseReport report;
  EXPECT_FALSE(DOMImplementation::createDocument(GetParam().input, &report));
  EXPECT_EQ(report.fault, GetParam().fault) << report.GetReason();
  EXPECT_EQ(report.line, GetParam().line);
  EXPECT_EQ(report.column, GetParam().column);
  EXPECT_EQ(report.offset, GetParam().offset);
  EXPECT_FALSE(report.GetReason().empty());
}

constexpr RefusedCase kOutside[] = {
    {"Empty", "", ParseFault::kNoRoot, 1, 1, 0},
    {"NoElement", "<!--c-->\n<?p?>", ParseFault::kNoRoot, 2, 6, 14},
    {"SecondElement", "<a/><b/>", ParseFault::kSecondRoot, 1, 5, 4},
    {"TextInFront", "x<a/>", ParseFault::kOutside, 1, 1, 0},
    {"TextBehind", "<a/>\rx", ParseFault::kOutside, 2, 1, 5},
    {"ReferenceBehind", "<a/>&#32;", ParseFault::kOutside, 1, 5, 4},
    {"CDATABehind", "<a/><![CDATA[]]>", ParseFault::kOutside, 1, 5, 4},
    {"EndTagBehind", "<a/></a>", ParseFault::kSecondRoot, 1, 5, 4},
    {"NulBehind", "<a/>\0"sv, ParseFault::kCharacter, 1, 5, 4},
    {"LessThanBehind", "<a/><", ParseFault::kSecondRoot, 1, 5, 4},
    {"VersionMissing", "<?xml encoding='utf-8'?><a/>", ParseFault::kDeclaration, 1, 6, 5},
    {"VersionTwo", "<?xml version='2.0'?><a/>", ParseFault::kDeclaration, 1, 20, 19},
    {"VersionWithoutMinor", "<?xml version='1.'?><a/>", ParseFault::kDeclaration, 1, 19, 18},
    {"QuotesDiffer", "<?xml version='1.0\"?><a/>", ParseFault::kDeclaration, 1, 6, 5},
    {"NoSpaceInside", "<?xml version='1.0'encoding='utf-8'?><a/>", ParseFault::kDeclaration, 1, 20,
     19},
    {"WrongOrder", "<?xml version='1.0' standalone='no' encoding='utf-8'?><a/>",
     ParseFault::kDeclaration, 1, 37, 36},
    {"Standalone", "<?xml version='1.0' standalone='YES'?><a/>", ParseFault::kDeclaration, 1, 37,
     36},
    {"DeclarationSecond", " <?xml version='1.0'?><a/>", ParseFault::kInstructionTarget, 1, 4, 3},
    {"TargetXml", "<a><?XmL?></a>", ParseFault::kInstructionTarget, 1, 6, 5},
    {"TargetMissing", "<? a?><a/>", ParseFault::kName, 1, 3, 2},
    {"TargetWithoutSpace", "<?p+?><a/>", ParseFault::kSpace, 1, 4, 3},
    {"TypeSecond", "<!DOCTYPE a><!DOCTYPE a><a/>", ParseFault::kDocumentType, 1, 13, 12},
    {"TypeBehind", "<a/><!DOCTYPE a>", ParseFault::kDocumentType, 1, 5, 4},
    {"TypeInLowerCase", "<!doctype a><a/>", ParseFault::kDocumentType, 1, 1, 0},
    {"TypeWithoutSpace", "<!DOCTYPEa><a/>", ParseFault::kSpace, 1, 10, 9},
    {"TypeWithoutName", "<!DOCTYPE ><a/>", ParseFault::kName, 1, 11, 10},
    {"TypeWithoutSystem", "<!DOCTYPE a 'x'><a/>", ParseFault::kDocumentType, 1, 13, 12},
    {"NoSpaceInType", "<!DOCTYPE a SYSTEM'x'><a/>", ParseFault::kSpace, 1, 19, 18},
    {"NoQuoteInType", "<!DOCTYPE a SYSTEM x><a/>", ParseFault::kQuote, 1, 20, 19},
    {"PublicAlone", "<!DOCTYPE a PUBLIC 'x'><a/>", ParseFault::kSpace, 1, 23, 22},
    {"PublicCharacter", "<!DOCTYPE a PUBLIC 'x\t' 'y'><a/>", ParseFault::kDocumentType, 1, 22, 21},
    {"SystemCharacter", "<!DOCTYPE a SYSTEM '\1'><a/>", ParseFault::kCharacter, 1, 21, 20},
    {"InternalSubset", "<!DOCTYPE a SYSTEM 'x' []><a/>", ParseFault::kInternalSubset, 1, 24, 23},
};

constexpr RefusedCase kInside[] = {
    {"NotClosed", "<a>\n", ParseFault::kUnfinished, 2, 1, 4},
    {"ClosedByAnotherName", "<a>\n<b></bb></a>", ParseFault::kEndTag, 2, 7, 10},
    {"ClosedInAnotherCase", "<a></A>", ParseFault::kEndTag, 1, 6, 5},
    {"EndTagWithMore", "<a></a b='1'>", ParseFault::kEndTag, 1, 8, 7},
    {"EndTagWithSpaceInFront", "<a></ a>", ParseFault::kEndTag, 1, 6, 5},
    {"StartTagWithoutName", "< a/>", ParseFault::kName, 1, 2, 1},
    {"NameStart", "<1/>", ParseFault::kName, 1, 2, 1},
    {"NameCharacter", "<a@/>", ParseFault::kSpace, 1, 3, 2},
    {"SlashInTag", "<a / >", ParseFault::kMarkup, 1, 5, 4},
    {"OtherMarkup", "<a><!ELEMENT a></a>", ParseFault::kMarkup, 1, 6, 5},
    {"CDATAInLowerCase", "<a><![cdata[]]></a>", ParseFault::kMarkup, 1, 6, 5},
    {"AttributeWithoutValue", "<a b/>", ParseFault::kEqualSign, 1, 5, 4},
    {"AttributeWithoutQuotes", "<a b=c/>", ParseFault::kQuote, 1, 6, 5},
    {"AttributesWithoutSpace", "<a b='1'c='2'/>", ParseFault::kSpace, 1, 9, 8},
    {"AttributeName", "<a -b='1'/>", ParseFault::kName, 1, 4, 3},
    {"LessThanInAttribute", "<a b='\n<'/>", ParseFault::kLessThan, 2, 1, 7},
    {"AttributeTwice", "<a b='' c='' b=''/>", ParseFault::kRepeatedAttribute, 1, 14, 13},
    {"AttributeTwiceOfMany", "<a a='' b='' c='' d='' e='' f='' g='' h='' i='' j='' i=''/>",
     ParseFault::kRepeatedAttribute, 1, 54, 53},
    {"CDataEndInText", "<a>]]]></a>", ParseFault::kCDataEnd, 1, 5, 4},
    {"CommentWithDashes", "<a><!-- -- --></a>", ParseFault::kComment, 1, 11, 10},
    {"CommentWithThreeDashes", "<a><!-- ---></a>", ParseFault::kComment, 1, 11, 10},
    {"CommentTooShort", "<!--><a/>", ParseFault::kUnfinished, 1, 10, 9},
    {"ControlInText", "<a>\r\n\t&lt;\x0B</a>", ParseFault::kCharacter, 2, 6, 10},
    {"ControlInCDATA", "<a><![CDATA[\x1F]]></a>", ParseFault::kCharacter, 1, 13, 12},
    {"ControlInAttribute", "<a b='\x01'/>", ParseFault::kCharacter, 1, 7, 6},
    {"ControlInComment", "<!--\x0C--><a/>", ParseFault::kCharacter, 1, 5, 4},
    {"ControlInInstruction", "<?p \x0C?><a/>", ParseFault::kCharacter, 1, 5, 4},
    {"NulInText", "<a>x\0</a>"sv, ParseFault::kCharacter, 1, 5, 4},
    {"LoneAmpersand", "<a>x & y</a>", ParseFault::kReference, 1, 6, 5},
    {"NoNumber", "<a>&#;</a>", ParseFault::kReference, 1, 4, 3},
    {"NoHexNumber", "<a>&#x;</a>", ParseFault::kReference, 1, 4, 3},
    {"UpperCaseX", "<a>&#X41;</a>", ParseFault::kReference, 1, 4, 3},
    {"LetterInNumber", "<a>&#6a;</a>", ParseFault::kReference, 1, 4, 3},
    {"UnfinishedReference", "<a b='&lt'/>", ParseFault::kReference, 1, 7, 6},
    {"ReferenceToNul", "<a>&#0;</a>", ParseFault::kCharacterReference, 1, 4, 3},
    {"ReferenceToControl", "<a b='&#x1F;'/>", ParseFault::kCharacterReference, 1, 7, 6},
    {"ReferenceToSurrogate", "<a>&#xD800;</a>", ParseFault::kCharacterReference, 1, 4, 3},
    {"ReferenceToFFFE", "<a>&#xFFFE;</a>", ParseFault::kCharacterReference, 1, 4, 3},
    {"ReferenceTooHigh", "<a>&#x110000;</a>", ParseFault::kCharacterReference, 1, 4, 3},
    {"ReferenceBeyond64Bits", "<a>&#18446744073709551681;</a>", ParseFault::kCharacterReference, 1,
     4, 3},
    {"UndeclaredEntity", "<a>&nbsp;</a>", ParseFault::kEntity, 1, 4, 3},
    {"EntityOfUpperCase", "<a>&LT;</a>", ParseFault::kEntity, 1, 4, 3},
    {"EntityWithoutSubset", "<!DOCTYPE a><a>&b;</a>", ParseFault::kEntity, 1, 16, 15},
    {"EntityOfStandalone",
     "<?xml version='1.0' standalone='yes'?><!DOCTYPE a SYSTEM 'x'><a b='&c;'/>",
     ParseFault::kEntity, 1, 68, 67},
};

constexpr RefusedCase kIllFormed[] = {
    {"EncodingName", "<?xml version='1.0' encoding='1'?><a/>", ParseFault::kDeclaration, 1, 21, 20},
    {"OtherEncoding", "<?xml version='1.0' encoding='cp1252'?><a/>", ParseFault::kEncodingName, 1,
     21, 20},
    {"Utf16WithoutMark", "<?xml version='1.0' encoding='utf-16'?><a/>",
     ParseFault::kEncodingMismatch, 1, 21, 20},
    {"HighByteInAscii", "<?xml version='1.0' encoding='US-ASCII'?><a>\xE9</a>",
     ParseFault::kIllFormed, 1, 45, 44},
    {"LoneContinuation", "<a>\xC3\xA9\x80</a>", ParseFault::kIllFormed, 1, 5, 5},
    {"Overlong2", "<a>\xC0\xAF</a>", ParseFault::kIllFormed, 1, 4, 3},
    {"Overlong3", "<a b='\xE0\x9F\xBF'/>", ParseFault::kIllFormed, 1, 7, 6},
    {"Overlong4", "<a><![CDATA[\xF0\x8F\xBF\xBF]]></a>", ParseFault::kIllFormed, 1, 13, 12},
    {"Surrogate", "<!--\xED\xA0\x80--><a/>", ParseFault::kIllFormed, 1, 5, 4},
    {"AboveUnicode", "<a>\xF4\x90\x80\x80</a>", ParseFault::kIllFormed, 1, 4, 3},
    {"Truncated", "<a>\xE2\x82</a>", ParseFault::kIllFormed, 1, 4, 3},
    {"CutOff", "<a>\xE2\x82", ParseFault::kIllFormed, 1, 4, 3},
    {"InName", "<a\xFF/>", ParseFault::kIllFormed, 1, 3, 2},
    {"FFFE", "<a>\xEF\xBF\xBE</a>", ParseFault::kCharacter, 1, 4, 3},
    {"FFFFInInstruction", "<?p \xEF\xBF\xBF?><a/>", ParseFault::kCharacter, 1, 5, 4},
    {"NameStartAboveAscii", "<\xC2\xB7/>", ParseFault::kName, 1, 2, 1},
    {"NameAboveAscii", "<a\xC3\x97/>", ParseFault::kSpace, 1, 3, 2},
    {"OtherNameInEndTag", "<\xCE\xB1></\xCE\xB2>", ParseFault::kEndTag, 1, 6, 6},
    {"SameNameAboveLatin1", "<a \xCE\xB1='' \xCE\xB1=''/>", ParseFault::kRepeatedAttribute, 1, 9,
     9},
    {"BehindAMark", "\xEF\xBB\xBF<a>\xC3\xA9&</a>", ParseFault::kReference, 1, 5, 8},
    {"Utf16Position", "\xFE\xFF\0<\0a\0>\0\n\xD8\x3D\xDE\0\0&"sv, ParseFault::kReference, 2, 2, 14},
    {"Utf16LoneHigh", "\xFE\xFF\0<\0a\0>\xD8\0\0<\0/\0a\0>"sv, ParseFault::kIllFormed, 1, 4, 8},
    {"Utf16LoneLow", "\xFF\xFE<\0a\0>\0\0\xDC<\0/\0a\0>\0"sv, ParseFault::kIllFormed, 1, 4, 8},
    {"Utf16CutOff", "\xFE\xFF\0<\0a\0/\0>\0"sv, ParseFault::kIllFormed, 1, 5, 10},
    {"Utf16DeclaredAsLatin1",
     "\xFF\xFE<\0?\0x\0m\0l\0 \0v\0e\0r\0s\0i\0o\0n\0=\0'\0\x31\0.\0\x30\0'\0 \0e\0n\0c\0o\0d\0i\0n\0g\0=\0'\0l\0a\0t\0i\0n\0\x31\0'\0?\0>\0"sv,
     ParseFault::kEncodingMismatch, 1, 21, 42},
    {"Utf32", "\xFF\xFE\0\0<\0\0\0a\0\0\0/\0\0\0>\0\0\0"sv, ParseFault::kCharacter, 1, 1, 2},
};

INSTANTIATE_TEST_SUITE_P(Outside, Refused, testing::ValuesIn(kOutside), kName);
INSTANTIATE_TEST_SUITE_P(Inside, Refused, testing::ValuesIn(kInside), kName);
INSTANTIATE_TEST_SUITE_P(IllFormed, Refused, testing::ValuesIn(kIllFormed), kName);

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
