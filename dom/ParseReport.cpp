#include "dom/ParseReport.h"

namespace dom {
namespace {

struct FaultText {
  ParseFault fault;
  std::string_view sentence;
};

constexpr FaultText kFaultTexts[] = {
    {ParseFault::kNone, ""},
    {ParseFault::kSize, "The document is larger than 4 GiB."},
    {ParseFault::kEncodingName, "The declared encoding is not supported."},
    {ParseFault::kEncodingMismatch, "The declared encoding is not the one used."},
    {ParseFault::kIllFormed, "The bytes are not a character in the document's encoding."},
    {ParseFault::kCharacter, "The character is not allowed in XML."},
    {ParseFault::kDeclaration, "The XML declaration is malformed."},
    {ParseFault::kInstructionTarget, "The target \"xml\" is reserved for the XML declaration."},
    {ParseFault::kDocumentType, "The document type declaration is malformed or misplaced."},
    {ParseFault::kInternalSubset, "An internal document type subset is not supported."},
    {ParseFault::kOutside, "Text is not allowed outside the root element."},
    {ParseFault::kNoRoot, "The document has no root element."},
    {ParseFault::kSecondRoot, "The document has more than one root element."},
    {ParseFault::kUnfinished, "The document ends inside an element or other markup."},
    {ParseFault::kMarkup, "The markup is malformed."},
    {ParseFault::kName, "A name is expected."},
    {ParseFault::kSpace, "White space is expected."},
    {ParseFault::kEqualSign, "An equal sign is expected after the attribute's name."},
    {ParseFault::kQuote, "A quoted value is expected."},
    {ParseFault::kLessThan, "The character '<' is not allowed in an attribute value."},
    {ParseFault::kRepeatedAttribute, "The element has another attribute of this name."},
    {ParseFault::kEndTag, "The end tag does not match the start tag."},
    {ParseFault::kComment, "\"--\" is not allowed in a comment."},
    {ParseFault::kCDataEnd, "\"]]>\" is not allowed in text."},
    {ParseFault::kReference, "The character '&' does not begin a reference."},
    {ParseFault::kCharacterReference, "The reference is not to a character allowed in XML."},
    {ParseFault::kEntity, "The entity is not declared."},
};

constexpr bool IsInOrder() {
  for (std::size_t i = 0; i < std::size(kFaultTexts); ++i)
    if (kFaultTexts[i].fault != static_cast<ParseFault>(i)) return false;
  return true;
}
static_assert(IsInOrder());

}  // namespace

std::string_view ParseReport::GetReason() const {
  return kFaultTexts[static_cast<std::size_t>(fault)].sentence;
}

}  // namespace dom
