// Compares the parser with libexpat: both must accept a document, with the same content, or refuse
// it.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <expat.h>
#include <string>
#include <string_view>
#include <vector>

#include "dom/CharacterClasses.h"
#include "dom/dom.h"
#include "fuzz/Require.h"

namespace {

using zaf::fuzz::Require;

/// The content of a document in one string. White space in an element with child elements is
/// ignored, since it may be layout.
class Content {
 public:
  explicit Content(bool has_values) : has_values_(has_values) {}

  void Start(std::string_view name) {
    if (!holds_elements_.empty()) holds_elements_.back() = true;
    Flush();
    holds_elements_.push_back(false);
    (string_ += "\n<") += name;
  }
  void Attribute(std::string_view name, std::string_view value) {
    (string_ += '\n') += name;
    if (has_values_) (string_ += '=') += value;
  }
  void Text(std::string_view text) { text_ += text; }
  void End() {
    Flush();
    holds_elements_.pop_back();
    string_ += "\n>";
  }
  [[nodiscard]] const std::string& Get() const { return string_; }

 private:
  void Flush() {
    if (!holds_elements_.empty() && holds_elements_.back())
      std::erase_if(text_, [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
    string_ += '\n' + text_;
    text_.clear();
  }

  bool has_values_;
  std::string string_;
  std::string text_;  ///< The text since the last tag.
  std::vector<bool> holds_elements_;
};

/// Converts text from libexpat, which is UTF-8, to ISO-8859-1.
std::string ToLatin1(std::string_view text) {
  std::string latin1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0) == 0x80) continue;
    const bool is_latin1 = byte == 0xC2 || byte == 0xC3;
    if (byte < 0x80)
      latin1 += text[i];
    else
      latin1 += is_latin1 ? static_cast<char>(byte << 6 | (text[i + 1] & 0x3F)) : '?';
  }
  return latin1;
}

Content& ContentOf(void* data) { return *static_cast<Content*>(data); }

void XMLCALL StartElement(void* data, const XML_Char* name, const XML_Char** attributes) {
  ContentOf(data).Start(ToLatin1(name));
  for (; *attributes != nullptr; attributes += 2)
    ContentOf(data).Attribute(ToLatin1(attributes[0]), ToLatin1(attributes[1]));
}
void XMLCALL EndElement(void* data, const XML_Char*) { ContentOf(data).End(); }
void XMLCALL Characters(void* data, const XML_Char* text, int size) {
  ContentOf(data).Text(ToLatin1({text, static_cast<std::size_t>(size)}));
}
void XMLCALL SkippedEntity(void* data, const XML_Char* name, int) {
  ContentOf(data).Text('&' + ToLatin1(name) + ';');
}

XML_Error ParseWithExpat(std::string_view text, Content& content) {
  const XML_Parser parser = XML_ParserCreate(nullptr);
  XML_SetUserData(parser, &content);
  XML_SetElementHandler(parser, StartElement, EndElement);
  XML_SetCharacterDataHandler(parser, Characters);
  XML_SetSkippedEntityHandler(parser, SkippedEntity);
  const bool is_accepted =
      XML_Parse(parser, text.data(), static_cast<int>(text.size()), XML_TRUE) == XML_STATUS_OK;
  const XML_Error error = is_accepted ? XML_ERROR_NONE : XML_GetErrorCode(parser);
  XML_ParserFree(parser);
  return error;
}

void Collect(dom::Node top, Content& content) {
  dom::Node node = top;
  while (true) {
    if (const dom::Element element(node); element) {
      content.Start(element.getTagName());
      for (const dom::Attr attribute : element.getAttributes())
        content.Attribute(attribute.getName(), attribute.getValue());
      if (node.hasChildNodes()) {
        node = node.getFirstChild();
        continue;
      }
      content.End();
    } else {
      content.Text(node.getNodeValue());
    }
    while (node != top && !node.getNextSibling()) {
      node = node.getParentNode();
      content.End();
    }
    if (node == top) return;
    node = node.getNextSibling();
  }
}

/// Whether the parsers differ deliberately.
bool MayDiffer(std::string_view text, const dom::ParseReport& report, XML_Error error) {
  using dom::ParseFault;
  const ParseFault fault = report.fault;
  const bool is_ascii = std::none_of(text.begin(), text.end(), dom::IsHigh);
  // The parser refuses internal subsets and versions other than 1.x, which libexpat accepts.
  if (fault == ParseFault::kInternalSubset || fault == ParseFault::kDeclaration) return true;
  // libexpat refuses the name latin1, and accepts UTF-16 without a mark.
  if (error == XML_ERROR_UNKNOWN_ENCODING || text.find('\0') < 2) return true;
  // Some builds of libexpat do not examine the second half of a surrogate pair.
  if (fault == ParseFault::kIllFormed &&
      (text.starts_with("\xFE\xFF") || text.starts_with("\xFF\xFE")))
    return true;
  // The declaration of ISO-8859-1 or US-ASCII takes precedence over a mark.
  if (text.starts_with("\xEF\xBB\xBF<?xml") && error != XML_ERROR_NONE) return true;
  // libexpat accepts these letters in ISO-8859-1 names, which no edition allows. A reference is
  // refused at its start, which precedes the name.
  const auto is_in_name = [](char c) { return dom::IsAsciiLetter(c) || dom::IsAsciiDigit(c); };
  std::string_view rest = text.substr(report.offset);
  if (fault == ParseFault::kReference)
    rest = {std::find_if_not(rest.begin() + 1, rest.end(), is_in_name), rest.end()};
  if (rest.substr(0, 2).find_first_of("\xAA\xB5\xBA") != rest.npos) return true;
  // libexpat implements the names of the fourth edition.
  return !is_ascii && error == XML_ERROR_INVALID_TOKEN && fault == ParseFault::kNone;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  dom::ParseReport report;
  const dom::Document document = dom::DOMImplementation::createDocument(text, &report);
  // libexpat cannot report a skipped reference in an attribute value.
  const bool has_values = text.find("DOCTYPE") == text.npos;
  Content expected(has_values);
  const XML_Error error = ParseWithExpat(text, expected);
  const bool is_accepted = static_cast<bool>(document);
  Require(is_accepted == (report.fault == dom::ParseFault::kNone), "a refusal has a reason");
  if (is_accepted != (error == XML_ERROR_NONE)) {
    if (MayDiffer(text, report, error)) return 0;
    const std::string reason(report.GetReason());
    std::fprintf(stderr, "%s %zu:%zu\nlibexpat: %s\n", reason.c_str(), report.line, report.column,
                 XML_ErrorString(error));
    Require(false, "both accept or both refuse");
  }
  if (!is_accepted || text.starts_with("\xEF\xBB\xBF<?xml")) return 0;
  Content content(has_values);
  Collect(document.getDocumentElement(), content);
  Require(content.Get() == expected.Get(), "the content is the same");
  return 0;
}
