#include <array>
#include <gtest/gtest.h>

#include "dom/Serializer.h"
#include "tests/dom/ParsedText.h"

namespace dom {
namespace {

TEST(Serializer, WritesAWholeDocument) {
  const Document document = DOMImplementation::createDocument();
  document.appendChild(
      document.createProcessingInstruction("xml", R"(version="1.0" encoding="ISO-8859-1")"));
  document.appendChild(document.createDocumentType("ZAF", "zanfo.dtd"));
  document.appendChild(document.createProcessingInstruction("zanfo", "run-only"));
  document.appendChild(document.createProcessingInstruction("empty", ""));
  const Element root = document.createElement("ZAF");
  document.appendChild(root);
  root.setAttribute("Version", "0x02000002");
  root.appendComment("Main program");
  root.appendElement("Program").appendComment("");
  root.appendElement("Comments").appendCDATASection("a < b");
  root.appendElement("Empty").appendChild(document.createTextNode(""));
  document.appendChild(document.createComment("end"));

  EXPECT_EQ(Serialized(document), R"(<?xml version="1.0" encoding="ISO-8859-1"?>
<!DOCTYPE ZAF SYSTEM "zanfo.dtd">
<?zanfo run-only?>
<?empty?>
<ZAF Version="0x02000002">
  <!--Main program-->
  <Program>
    <!---->
  </Program>
  <Comments><![CDATA[a < b]]></Comments>
  <Empty/>
</ZAF>
<!--end-->
)");
}

TEST(Serializer, AddsNothingAroundAnInstructionInAnElement) {
  const Document document = DOMImplementation::createDocument();
  const Element root = document.createElement("a");
  document.appendChild(root);
  root.appendElement("b").appendElement("c");
  root.appendChild(document.createProcessingInstruction("p", "q"));
  EXPECT_EQ(Serialized(document), "<a><b><c/></b><?p q?></a>\n");
}

TEST(Serializer, IndentsNoDeeperThan32Levels) {
  const std::string lines =
      Join({"\n", Reserialized(Join({Repeat("<a>", 40), Repeat("</a>", 40)}))});
  for (std::size_t level = 0; level < 39; ++level) {
    const std::string blanks(2 * std::min<std::size_t>(level, 32), ' ');
    EXPECT_NE(lines.find(Join({"\n", blanks, "<a>\n"})), std::string::npos) << level;
  }
  EXPECT_EQ(lines.find(std::string(65, ' ')), std::string::npos);
  EXPECT_NE(lines.find(Join({"\n", std::string(64, ' '), "<a/>\n"})), std::string::npos);
}

// Characters are examined 16 at a time: every length of names and texts, and every place of an
// escape.
TEST(Serializer, EscapesAtEachPlaceOfATextOfEachLength) {
  for (std::size_t length = 1; length <= 50; ++length) {
    for (std::size_t place = 0; place < length; ++place) {
      for (const auto& [escaped, in_text, in_value] :
           {std::array{"\n", "\n", "&#10;"}, std::array{"&", "&amp;", "&amp;"},
            std::array{"z", "z", "z"}}) {
        const std::string before(place, 'x'), after(length - place - 1, 'y');
        const std::string element_name(length, 'n'), attribute_name(length, 'm');
        const Document document = DOMImplementation::createDocument();
        const Element element = document.createElement(element_name);
        document.appendChild(element);
        element.setAttribute(attribute_name, before + escaped + after);
        element.appendText(before + escaped + after);
        ASSERT_EQ(Serialized(document),
                  Join({"<", element_name, " ", attribute_name, "=\"", before, in_value, after,
                        "\">", before, in_text, after, "</", element_name, ">\n"}));
      }
    }
  }
}

TEST(Serializer, AppendsToWhatIsThere) {
  OutputBuffer output;
  output.Append("before ");
  EXPECT_TRUE(Serialize(*ParsedText("<a/>"), output));
  EXPECT_TRUE(Serialize(Document(), output));
  output.Append(3, '\n');
  OutputBuffer moved = std::move(output);
  moved.Bytes().front() = 'B';
  EXPECT_EQ(moved.View(), "Before <a/>\n\n\n\n");
}

/// A sink that accepts a given number of pieces.
class Pieces final : public OutputSink {
 public:
  explicit Pieces(std::size_t most) : left_(most) {}

  bool Take(std::span<char> bytes) override {
    if (left_-- == 0) return false;
    EXPECT_LE(bytes.size(), OutputBuffer::kMostHeld);
    bytes_.append(bytes.data(), bytes.size());
    return true;
  }
  [[nodiscard]] const std::string& Bytes() const { return bytes_; }

 private:
  std::size_t left_;
  std::string bytes_;
};

TEST(Serializer, HandsALargeDocumentOverInPieces) {
  constexpr std::size_t kLong = 2'000'003;
  const std::string plain = Repeat("x", kLong);
  const std::string quotes = Repeat("&quot;", kLong / 6);
  const std::string text =
      Join({"<a b=\"", quotes, "\">", quotes, "<c d=\"", plain, "\"/><![CDATA[", plain, "]]>",
            Repeat("<e/>", kLong / 4), "</a>\n"});
  const ParsedText document(text);
  OutputBuffer output;
  Pieces sink(SIZE_MAX);
  output.SetSink(sink);
  EXPECT_TRUE(Serialize(*document, output));
  EXPECT_TRUE(output.Flush());
  EXPECT_TRUE(sink.Bytes() == text);
  EXPECT_LE(output.Capacity(), OutputBuffer::kMostHeld);

  output.Clear();
  Pieces refusing_sink(3);
  output.SetSink(refusing_sink);
  EXPECT_FALSE(Serialize(*document, output));
  EXPECT_FALSE(output.Flush());
  EXPECT_EQ(refusing_sink.Bytes(), text.substr(0, refusing_sink.Bytes().size()));
  output.Clear();
  EXPECT_EQ(output.View(), "");
}

}  // namespace
}  // namespace dom
