#pragma once

#include <string_view>

#include "dom/Scanner.h"

namespace dom {

/// Parses a document into an empty tree, in one pass and without recursion. The tree refers to the
/// bytes of the document. DOMImplementation::createDocument documents what is accepted.
class Parser : private Scanner {
 public:
  /// Parses `text`. False when the text is refused, with the reason in the report, or when memory
  /// runs out, which the tree records.
  static bool Parse(std::string_view text, Tree& tree, ParseReport& report);

 private:
  using Scanner::Scanner;

  const char* ReadDocument(Encoding source);
  // Outside the root element.
  const char* ReadDeclaration(const char* p, Encoding source);
  bool TakeAssignment(const char*& p, std::string_view name, std::string_view& value);
  bool AcceptEncoding(const char* place, std::string_view name, Encoding source);
  const char* ReadDocumentType(const char* p);
  const char* ReadLiteral(const char* p, bool is_public);
  // Anywhere.
  const char* ReadComment(const char* p);
  const char* ReadInstruction(const char* p);
  // Inside the root element.
  const char* ReadRoot(const char* p);
  const char* ReadStartTag(const char* p);
  const char* ReadAttributes(const char* p, TreeElement& element);
  const char* ReadAttribute(const char* p, TreeElement& element);
  const char* ReadValue(const char* p, TreeText& value);
  const char* ReadEndTag(const char* p);
  const char* ReadText(const char* p);
  const char* ReadCData(const char* p);

  void BeginChild();
  void Close(TreeElement& element);
  const char* AppendText(NodeType type, TreeText text, const char* next);

  TreeElement* parent_ = nullptr;
  bool is_standalone_ = false;
};

}  // namespace dom
