#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>

#include "dom/Document.h"
#include "tests/dom/ParsedText.h"

namespace dom {
namespace {

using testing::ElementsAre;

/// An empty document with a root element.
class DocumentTest : public testing::Test {
 protected:
  void SetUp() override { document_.appendChild(root_); }

  Document document_ = DOMImplementation::createDocument();
  Element root_ = document_.createElement("root");
};

template <class List>
std::vector<std::string_view> NamesIn(List list) {
  std::vector<std::string_view> names;
  for (const auto handle : list) {
    if constexpr (requires { handle.getNodeName(); })
      names.push_back(handle.getNodeName());
    else
      names.push_back(handle.getName());
  }
  return names;
}

TEST_F(DocumentTest, DetachedNodesAreNoPartOfTheDocument) {
  const Element one = document_.createElement("one");
  const Text two = document_.createTextNode("two");
  one.appendElement("inner");
  EXPECT_FALSE(one.getParentNode());
  EXPECT_FALSE(one.getNextSibling());
  EXPECT_FALSE(one.getPreviousSibling());
  EXPECT_FALSE(two.getNextSibling());
  EXPECT_THAT(NamesIn(document_.getChildNodes()), ElementsAre("root"));
  EXPECT_FALSE(root_.getPreviousSibling());
  EXPECT_EQ(document_.getFirstChild(), root_);
  EXPECT_EQ(Serialized(document_), "<root/>\n");

  EXPECT_EQ(root_.appendChild(two), two);
  EXPECT_EQ(root_.insertBefore(one, two), one);
  EXPECT_EQ(one.getParentNode(), root_);
  EXPECT_EQ(Serialized(document_), "<root><one><inner/></one>two</root>\n");

  EXPECT_EQ(document_.removeChild(root_), root_);
  EXPECT_FALSE(document_.getNode().hasChildNodes());
  EXPECT_FALSE(document_.getLastChild());
  EXPECT_FALSE(document_.getDocumentElement());
  EXPECT_EQ(Serialized(document_), "");
}

TEST_F(DocumentTest, RefusesNodesThatDoNotBelong) {
  const Document other = DOMImplementation::createDocument();
  const Element inner = root_.appendElement("inner");
  EXPECT_FALSE(root_.appendChild(other.createElement("a")));
  EXPECT_FALSE(inner.appendChild(root_));
  EXPECT_FALSE(root_.appendChild(document_.createDocumentType("a", "b")));
  EXPECT_FALSE(document_.appendChild(document_.createTextNode("a")));
  EXPECT_FALSE(document_.appendChild(document_.createCDATASection("a")));
  EXPECT_FALSE(root_.appendChild(document_.getNode()));
  EXPECT_FALSE(root_.insertBefore(document_.createElement("a"), root_));
  EXPECT_FALSE(document_.removeChild(inner));
  EXPECT_FALSE(document_.createTextNode("t").appendChild(inner));
  EXPECT_EQ(Serialized(document_), "<root>\n  <inner/>\n</root>\n");
}

TEST_F(DocumentTest, NodesSayWhatTheyAre) {
  const DocumentType type = document_.createDocumentType("root", "some\".dtd");
  document_.insertBefore(type, root_);
  root_.appendText("t");
  root_.appendCDATASection("c");
  root_.appendComment("k");
  root_.appendChild(document_.createProcessingInstruction("target", "data"));
  EXPECT_EQ(document_.getDoctype(), type);
  EXPECT_EQ(type.getName(), "root");
  EXPECT_EQ(type.getSystemId(), "some .dtd");
  EXPECT_EQ(document_.getNode().getNodeName(), "#document");
  EXPECT_EQ(document_.getNode().getNodeType(), NodeType::kDocument);
  EXPECT_EQ(type.getNodeType(), NodeType::kDocumentType);
  EXPECT_EQ(root_.getNodeType(), NodeType::kElement);
  EXPECT_EQ(Node().getNodeType(), NodeType::kNone);
  EXPECT_THAT(NamesIn(document_.getChildNodes()), ElementsAre("root", "root"));

  NodeList list = root_.getChildNodes();
  ASSERT_EQ(list.getLength(), 4U);
  EXPECT_THAT(NamesIn(list), ElementsAre("#text", "#cdata-section", "#comment", "target"));
  EXPECT_EQ(ProcessingInstruction(list.item(3)).getData(), "data");
  EXPECT_EQ(Comment(list.item(2)).getData(), "k");
  EXPECT_EQ(CDATASection(list.item(1)).getData(), "c");
  EXPECT_EQ(Text(list.item(0)).getData(), "t");
  EXPECT_FALSE(Text(list.item(1)));
  EXPECT_FALSE(list.item(4));
  EXPECT_EQ(list.item(3), root_.getLastChild());
  EXPECT_EQ(list.item(3).getPreviousSibling(), list.item(2));
}

TEST_F(DocumentTest, AttributesAreSetOnceAndKeepTheirOrder) {
  root_.setAttribute("b", "1");
  root_.setAttribute("a", "2");
  root_.setAttribute("b", "a longer value than the one before it");
  root_.appendAttribute("c", "");
  EXPECT_THAT(NamesIn(root_.getAttributes()), ElementsAre("b", "a", "c"));
  EXPECT_EQ(root_.getAttribute("b"), "a longer value than the one before it");
  EXPECT_EQ(root_.getAttribute("d"), "");
  EXPECT_TRUE(root_.hasAttribute("c"));
  EXPECT_FALSE(root_.hasAttribute("d"));
  const Attr a = root_.getAttributes().getNamedItem("a");
  EXPECT_EQ(a, root_.getAttributeNode("a"));
  a.setValue("\1 3");
  EXPECT_EQ(a.getValue(), " 3");
  EXPECT_FALSE(root_.getAttributes().getNamedItem("d"));
}

TEST_F(DocumentTest, NoDataMakesADocumentIllFormed) {
  std::string controls;
  for (char c = 0; c < 0x20; ++c) controls += c;
  root_.setAttribute("a", controls + "0123456789" + controls);
  EXPECT_EQ(root_.getAttribute("a"), "\t\n\r0123456789\t\n\r");
  root_.appendComment("-a--b---\1-");
  root_.appendComment("\1a-");
  document_.appendChild(document_.createComment(controls));
  document_.appendChild(document_.createProcessingInstruction("p", "a?>b?\1>?\?>"));
  EXPECT_EQ(Serialized(document_),
            "<root a=\"&#9;&#10;&#13;0123456789&#9;&#10;&#13;\">\n  <!---a- b- - -->\n  <!--a -->\n"
            "</root>\n<!--\t\n\r-->\n<?p a >b >? >?>\n");
}

TEST_F(DocumentTest, ElementsAreFoundByName) {
  const ParsedText parsed("<r><!--a-->t<b/><a/><?a?><b i='2'/><ab/></r>");
  const Element root = parsed->getDocumentElement();
  EXPECT_EQ(root.getFirstChildElement().getTagName(), "b");
  EXPECT_EQ(root.getFirstChildElement().getNextSiblingElement().getTagName(), "a");
  EXPECT_EQ(root.getFirstChildElement("b").getNextSiblingElement("b").getAttribute("i"), "2");
  EXPECT_FALSE(root.getFirstChildElement("b").getNextSiblingElement("c"));
  EXPECT_FALSE(root.getFirstChildElement("c"));
  EXPECT_FALSE(root.getFirstChildElement("ab").getNextSiblingElement());

  root_.appendChild(document_.createProcessingInstruction("a", ""));
  EXPECT_FALSE(root_.getFirstChildElement("a"));
  const Element a = root_.appendElement("a");
  EXPECT_EQ(root_.getFirstChildElement("a"), a);
}

TEST_F(DocumentTest, NamesOfAnyLengthDifferInAnyCharacter) {
  const std::string letters(5001, 'n');
  for (const std::size_t size : {1U, 7U, 8U, 9U, 15U, 16U, 17U, 26U, 63U, 64U, 5000U}) {
    std::string name(letters, 0, size);
    const std::string_view kept_name = std::string_view(letters).substr(0, size);
    const Element element = root_.appendElement(kept_name);
    element.setAttribute(kept_name, kept_name);
    EXPECT_EQ(root_.getFirstChildElement(name), element);
    EXPECT_EQ(element.getTagName(), name);
    EXPECT_EQ(element.getAttribute(name), name);
    for (char& c : name) {
      const char kept = std::exchange(c, '-');
      EXPECT_FALSE(root_.getFirstChildElement(name)) << name;
      c = kept;
    }
  }
}

TEST_F(DocumentTest, TextContentJoinsTheOwnPieces) {
  std::string scratch = "untouched";
  EXPECT_EQ(root_.getTextContent(scratch), "");
  root_.appendText("");
  EXPECT_FALSE(root_.hasChildNodes());
  root_.appendElement("b").appendText("not this");
  root_.appendCDATASection("one");
  EXPECT_EQ(root_.getTextContent(scratch), "one");
  EXPECT_EQ(scratch, "untouched");
  root_.appendComment("nor this");
  root_.appendText(" two");
  root_.appendCDATASection(" three");
  EXPECT_EQ(root_.getTextContent(scratch), "one two three");
  const std::string_view kept = root_.getTextContent();
  EXPECT_EQ(document_.createElement("c").getTextContent(), "");
  EXPECT_EQ(kept, "one two three");
  EXPECT_EQ(Serialized(document_),
            "<root><b>not this</b><![CDATA[one]]><!--nor this--> two<![CDATA[ three]]></root>\n");
}

TEST(Document, NullHandlesAreSafe) {
  const Document document;
  const Element null;
  EXPECT_FALSE(document);
  EXPECT_TRUE(document.IsComplete());
  EXPECT_FALSE(document.getDocumentElement());
  EXPECT_FALSE(document.getDoctype());
  EXPECT_FALSE(document.createElement("a"));
  EXPECT_FALSE(document.createComment("a"));
  EXPECT_FALSE(document.appendChild(null));
  null.setAttribute("a", "b");
  null.appendText("a");
  EXPECT_FALSE(null.appendElement("a"));
  EXPECT_EQ(null.getAttribute("a"), "");
  EXPECT_EQ(null.getTextContent(), "");
  EXPECT_EQ(null.getChildNodes().getLength(), 0U);
  EXPECT_FALSE(null.getFirstChildElement("a").getNextSiblingElement("b").getParentNode());
  EXPECT_FALSE(Attr().getNextAttribute());
}

TEST(Document, HandlesSurviveAMoveOfTheDocument) {
  Document document = DOMImplementation::createDocument();
  const Node node = document.appendChild(document.createElement("a"));
  Document moved = std::move(document);
  EXPECT_EQ(moved.getDocumentElement(), node);
  moved.Clear();
  EXPECT_FALSE(moved.getFirstChild());
  EXPECT_TRUE(moved.createElement("b"));
}

#if !defined(ZAF2XML_SANITIZED)  // There no memory is kept, and malloc aborts instead of failing.

TEST(Document, SaysThatMemoryRanOut) {
  Document document = DOMImplementation::createDocument();
  const Element root = document.createElement("a");
  document.appendChild(root);
  EXPECT_TRUE(document.IsComplete());
  root.appendText({"", std::size_t{1} << 62});
  EXPECT_FALSE(document.IsComplete());
  OutputBuffer output;
  EXPECT_FALSE(Serialize(document, output));
  document.Clear();
  EXPECT_TRUE(document.IsComplete());

  OutputBuffer failed;
  EXPECT_FALSE(failed.Reserve(std::size_t{1} << 62));
  failed.Append("more");
  EXPECT_TRUE(failed.HasFailed());
  EXPECT_FALSE(Serialize(document, failed));
  failed.Clear();
  EXPECT_TRUE(Serialize(document, failed));
}

#endif

TEST(ChildFinder, FindsTheFirstOfANameInAnyOrder) {
  ParsedText parsed("<r> <a n='1'/>t<b n='1'/><c n='1'/><a n='2'/><b n='2'/><d n='1'/></r>");
  const Element root = parsed->getDocumentElement();
  for (const std::string_view order : {"abcd", "dcba", "axbdc", "badc", "cxda"}) {
    ChildFinder children(root);
    for (const char name : order) {
      const Element found = children.Find({&name, 1});
      EXPECT_EQ(found, root.getFirstChildElement({&name, 1})) << order << name;
    }
  }
  EXPECT_FALSE(ChildFinder(Element()).Find("a"));
}

}  // namespace
}  // namespace dom
