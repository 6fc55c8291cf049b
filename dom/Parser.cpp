#include "dom/Parser.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "dom/RepeatedName.h"

namespace dom {
namespace {

constexpr std::size_t kMostSize = std::numeric_limits<std::uint32_t>::max();
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr char kCDataStart[] = "<![CDATA[";

bool IsBlank(const TreeNode& node) {
  return node.type == NodeType::kText && std::ranges::all_of(node.Text(), IsSpace);
}

/// Removes the white space between an element's first pieces once it is found to be layout.
void DropBlanks(const TreeElement& element) {
  TreeNode* next = nullptr;
  for (TreeNode* node = element.first_child; node != nullptr; node = next) {
    next = node->next;
    if (IsBlank(*node)) Tree::Detach(*node);
  }
}

/// [26] VersionNum.
bool IsVersion(std::string_view text) {
  return text.size() > 2 && text.starts_with("1.") &&
         std::ranges::all_of(text.substr(2), IsAsciiDigit);
}

/// [81] EncName.
bool IsEncodingName(std::string_view text) {
  return !text.empty() && IsAsciiLetter(text.front()) && std::ranges::all_of(text, [](char c) {
    return IsAsciiLetter(c) || IsAsciiDigit(c) || c == '.' || c == '_' || c == '-';
  });
}

bool IsXml(std::string_view target) {
  return target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' &&
         (target[2] | 0x20) == 'l';
}

}  // namespace

bool Parser::Parse(std::string_view text, Tree& tree, ParseReport& report) {
  const bool is_utf16 = HasUtf16Mark(text);
  const std::size_t mark_size = is_utf16 ? 2 : text.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0;
  report = {};
  if (text.size() > kMostSize / (is_utf16 ? 2 : 1)) {
    report.fault = ParseFault::kSize;
    return false;
  }
  std::string_view decoded = text.substr(mark_size);
  if (is_utf16) {
    char* const start = tree.AllocateText(text.size() / 2 * 3);
    if (start == nullptr) return false;
    decoded = InPlace(start, WriteUtf16AsUtf8(text, start)).View();
  }
  report.text = decoded;
  const Encoding source = is_utf16 ? Encoding::kUtf16 : Encoding::kUtf8;
  Parser parser(decoded, tree);
  const bool is_done = parser.ReadDocument(source) != nullptr;
  report.replaced_count = parser.replaced_count_;
  report.is_utf8 = parser.IsUtf8();
  report.fault = parser.fault_;
  if (report.fault != ParseFault::kNone) {
    parser.Locate(source, report);
    report.offset += mark_size;
  }
  return is_done;
}

/// [1] document.
const char* Parser::ReadDocument(Encoding source) {
  const char* p = begin_;
  if (StartsWith(p, "<?xml") && IsSpace(Peek(p + 5))) p = ReadDeclaration(p, source);
  bool has_type = false;
  bool has_root = false;
  while (p != nullptr) {
    p = SkipSpace(p);
    if (p == end_) return has_root ? p : Fail(p, ParseFault::kNoRoot);
    if (*p != '<') return FailAt(p, ParseFault::kOutside);
    if (StartsWith(p, "<?")) {
      p = ReadInstruction(p);
    } else if (StartsWith(p, "<!--")) {
      p = ReadComment(p);
    } else if (StartsWith(p, "<!D") && !has_type && !has_root) {
      p = ReadDocumentType(p);
      has_type = true;
    } else if (StartsWith(p, "<!")) {
      return Fail(p, StartsWith(p, kCDataStart) ? ParseFault::kOutside : ParseFault::kDocumentType);
    } else if (has_root) {
      return Fail(p, ParseFault::kSecondRoot);
    } else {
      p = ReadRoot(p);
      has_root = true;
    }
  }
  return nullptr;
}

/// [23] XMLDecl.
const char* Parser::ReadDeclaration(const char* p, Encoding source) {
  std::string_view value;
  p += 5;
  if (!TakeAssignment(p, "version", value) || !IsVersion(value))
    return FailAt(p, ParseFault::kDeclaration);
  const char* const encoding_place = SkipSpace(p);
  if (TakeAssignment(p, "encoding", value) && !AcceptEncoding(encoding_place, value, source))
    return nullptr;
  if (TakeAssignment(p, "standalone", value)) {
    if (value != "yes" && value != "no") return Fail(p, ParseFault::kDeclaration);
    is_standalone_ = value == "yes";
  }
  p = SkipSpace(p);
  return StartsWith(p, "?>") ? p + 2 : FailAt(p, ParseFault::kDeclaration);
}

/// Reads white space, the name, [25] Eq and a value in quotes. False, with `p` unchanged, when
/// there is anything else.
bool Parser::TakeAssignment(const char*& p, std::string_view name, std::string_view& value) {
  const char* at = SkipSpace(p);
  if (at == p || !InPlace(at, end_).View().starts_with(name)) return false;
  at = SkipSpace(at + name.size());
  if (Peek(at) != '=') return false;
  at = SkipSpace(at + 1);
  const char quote = Peek(at);
  if (quote != '"' && quote != '\'') return false;
  const char* const end = FindText(at + 1, {&quote, 1});
  if (end == nullptr) return false;
  value = InPlace(at + 1, end).View();
  p = end + 1;
  return true;
}

bool Parser::AcceptEncoding(const char* place, std::string_view name, Encoding source) {
  if (!IsEncodingName(name)) return Fail(place, ParseFault::kDeclaration) != nullptr;
  const std::optional<Encoding> encoding = FindEncoding(name);
  if (!encoding) return Fail(place, ParseFault::kEncodingName) != nullptr;
  if ((*encoding == Encoding::kUtf16) != (source == Encoding::kUtf16))
    return Fail(place, ParseFault::kEncodingMismatch) != nullptr;
  if (source != Encoding::kUtf16) SetEncoding(*encoding);
  return true;
}

/// [28] doctypedecl, without an internal subset.
const char* Parser::ReadDocumentType(const char* p) {
  constexpr char kStart[] = "<!DOCTYPE";
  if (!StartsWith(p, kStart)) return Fail(p, ParseFault::kDocumentType);
  p += sizeof kStart - 1;
  const char* next = SkipSpace(p);
  if (next == p) return FailAt(p, ParseFault::kSpace);
  p = SkipName(next);
  if (p == next) return FailAt(p, ParseFault::kName);
  next = SkipSpace(p);
  const bool is_public = StartsWith(next, "PUBLIC");
  if (next != p && (is_public || StartsWith(next, "SYSTEM"))) {
    p = next + 6;
    if (is_public) p = ReadLiteral(p, true);
    if (p != nullptr) p = ReadLiteral(p, false);
    if (p == nullptr) return nullptr;
    keeps_references_ = !is_standalone_;
    next = SkipSpace(p);
  }
  if (Peek(next) == '[') return Fail(next, ParseFault::kInternalSubset);
  return Peek(next) == '>' ? next + 1 : FailAt(next, ParseFault::kDocumentType);
}

/// Reads white space, then [11] SystemLiteral or [12] PubidLiteral.
const char* Parser::ReadLiteral(const char* p, bool is_public) {
  const char* const start = SkipSpace(p);
  if (start == p) return FailAt(p, ParseFault::kSpace);
  const char quote = Peek(start);
  if (quote != '"' && quote != '\'') return FailAt(start, ParseFault::kQuote);
  const char* const end = FindText(start + 1, {&quote, 1});
  if (end == nullptr) return Fail(end_, ParseFault::kUnfinished);
  if (is_public) {
    const char* const other = std::find_if_not(start + 1, end, IsPublicIdCharacter);
    if (other != end) return FailAt(other, ParseFault::kDocumentType);
  }
  return CheckCharacters(start + 1, end) ? end + 1 : nullptr;
}

/// [15] Comment.
const char* Parser::ReadComment(const char* p) {
  p += 4;
  const char* const end = FindText(p, "--");
  if (!CheckCharacters(p, end == nullptr ? end_ : end)) return nullptr;
  if (end == nullptr) return Fail(end_, ParseFault::kUnfinished);
  return Peek(end + 2) == '>' ? end + 3 : FailAt(end + 2, ParseFault::kComment);
}

/// [16] PI.
const char* Parser::ReadInstruction(const char* p) {
  const char* const target = p + 2;
  const char* const data = SkipName(target);
  if (data == target) return FailAt(target, ParseFault::kName);
  if (IsXml(InPlace(target, data).View())) return Fail(target, ParseFault::kInstructionTarget);
  if (StartsWith(data, "?>")) return data + 2;
  if (!IsSpace(Peek(data))) return FailAt(data, ParseFault::kSpace);
  const char* const end = FindText(data, "?>");
  if (!CheckCharacters(data, end == nullptr ? end_ : end)) return nullptr;
  return end == nullptr ? Fail(end_, ParseFault::kUnfinished) : end + 2;
}

/// [39] element: the root with its content.
const char* Parser::ReadRoot(const char* p) {
  parent_ = tree_.Root();
  p = ReadStartTag(p);
  while (p != nullptr && parent_ != tree_.Root()) {
    p = ReadText(p);
    if (p == nullptr) break;
    switch (Peek(p + 1)) {
      case '/':
        p = ReadEndTag(p);
        break;
      case '!':
        p = StartsWith(p, "<!--") ? ReadComment(p) : ReadCData(p);
        break;
      case '?':
        p = ReadInstruction(p);
        break;
      default:
        p = ReadStartTag(p);
    }
  }
  return p;
}

/// [40] STag or [44] EmptyElemTag.
const char* Parser::ReadStartTag(const char* p) {
  const char* const name = p + 1;
  p = SkipName(name);
  if (p == name) return FailAt(p, ParseFault::kName);
  TreeElement* const element = tree_.AdoptElement(NodeType::kElement, InPlace(name, p));
  if (element == nullptr) return nullptr;
  BeginChild();
  Tree::Append(*parent_, *element);
  if (Peek(p) != '>') {
    p = ReadAttributes(p, *element);
    if (p == nullptr) return nullptr;
    if (*p == '/') {
      Close(*element);
      return p + 2;
    }
  }
  parent_ = element;
  return p + 1;
}

/// Reads the attributes and the white space after them. Returns the place of the `>` or `/>`.
const char* Parser::ReadAttributes(const char* p, TreeElement& element) {
  std::size_t count = 0;
  while (true) {
    const char* const next = SkipSpace(p);
    if (Peek(next) == '>') p = next;
    if (Peek(next) == '/') p = Peek(next + 1) == '>' ? next : FailAt(next + 1, ParseFault::kMarkup);
    if (p == next || p == nullptr) break;
    p = ReadAttribute(next, element);
    if (p == nullptr) return nullptr;
    ++count;
  }
  if (p != nullptr && Peek(p) != '>' && Peek(p) != '/') return FailAt(p, ParseFault::kSpace);
  if (p == nullptr || count < 2) return p;
  const TreeAttribute* const repeated = FindRepeatedName(element, count, tree_);
  if (repeated != nullptr) return Fail(repeated->name.data, ParseFault::kRepeatedAttribute);
  return tree_.IsComplete() ? p : nullptr;
}

/// [41] Attribute.
const char* Parser::ReadAttribute(const char* p, TreeElement& element) {
  const char* const name_end = SkipName(p);
  if (name_end == p) return FailAt(p, ParseFault::kName);
  const TreeText name = InPlace(p, name_end);
  p = SkipSpace(name_end);
  if (Peek(p) != '=') return FailAt(p, ParseFault::kEqualSign);
  TreeText value{};
  p = ReadValue(SkipSpace(p + 1), value);
  if (p == nullptr) return nullptr;
  tree_.AppendAttribute(element, name, value);
  return tree_.IsComplete() ? p : nullptr;
}

/// [10] AttValue.
const char* Parser::ReadValue(const char* p, TreeText& value) {
  const char quote = Peek(p);
  if (quote != '"' && quote != '\'') return FailAt(p, ParseFault::kQuote);
  const char* const start = p + 1;
  const char* end = Find<Search::kValueEnd>(start, end_, high_);
  while (Peek(end) != quote && (Peek(end) == '"' || Peek(end) == '\''))
    end = Find<Search::kValueEnd>(end + 1, end_, high_);
  if (Peek(end) == quote) {
    value = InPlace(start, end);
    return end + 1;
  }
  end = FindText(end, {&quote, 1});
  if (end == nullptr) return Fail(end_, ParseFault::kUnfinished);
  value = Decode(start, end, Part::kValue);
  return value.data == nullptr ? nullptr : end + 1;
}

/// [42] ETag.
const char* Parser::ReadEndTag(const char* p) {
  const std::string_view name = parent_->Text();
  const char* const start = p + 2;
  if (static_cast<std::size_t>(end_ - start) < name.size() ||
      !AreEqualNames({start, name.size()}, name))
    return FailAt(start, ParseFault::kEndTag);
  p = start + name.size();
  if (Peek(p) != '>') {
    p = SkipSpace(p);
    if (Peek(p) != '>') return FailAt(p, ParseFault::kEndTag);
  }
  TreeElement* const element = parent_;
  parent_ = element->parent;
  Close(*element);
  return p + 1;
}

/// [14] CharData, possibly empty, with references, up to the next markup.
const char* Parser::ReadText(const char* p) {
  const char* const start = p;
  p = SkipSpace(p);
  if (Peek(p) == '<') {
    const char after = Peek(p + 1);
    const bool is_kept = !parent_->HasMark(TreeNode::kHoldsElements) &&
                         (after == '/' || after == '!' || after == '?');
    if (p == start || !is_kept) return p;
  }
  p = Find<Search::kTextEnd>(start, end_, high_);
  if (Peek(p) == '<') return AppendText(NodeType::kText, InPlace(start, p), p);
  const char* const end = FindText(p, "<");
  const TreeText text = Decode(start, end == nullptr ? end_ : end, Part::kText);
  if (text.data != nullptr && end == nullptr) return Fail(end_, ParseFault::kUnfinished);
  return AppendText(NodeType::kText, text, end);
}

/// [18] CDSect.
const char* Parser::ReadCData(const char* p) {
  if (!StartsWith(p, kCDataStart)) return FailAt(p + 2, ParseFault::kMarkup);
  const char* const start = p + sizeof kCDataStart - 1;
  p = Find<Search::kCDataEnd>(start, end_, high_);
  while (Peek(p) == ']' && !StartsWith(p, "]]>")) p = Find<Search::kCDataEnd>(p + 1, end_, high_);
  if (Peek(p) == ']') return AppendText(NodeType::kCDATASection, InPlace(start, p), p + 3);
  const char* const end = FindText(p, "]]>");
  if (end == nullptr) return Fail(end_, ParseFault::kUnfinished);
  return AppendText(NodeType::kCDATASection, Decode(start, end, Part::kCData), end + 3);
}

/// Prepares the parent for a child element: from now on its white space is layout.
void Parser::BeginChild() {
  if (!parent_->HasMark(TreeNode::kHoldsElements) && parent_->may_hold_text) DropBlanks(*parent_);
  parent_->SetMark(TreeNode::kHoldsElements);
}

/// Finishes an element: its end tag was read, so its names may be decoded.
void Parser::Close(TreeElement& element) {
  if (!has_other_names_) return;
  const TreeText name = DecodeName(InPlace(element.text, element.text + element.text_size));
  element.text = name.data;
  element.text_size = name.size;
  for (TreeAttribute* attribute = element.first_attribute; attribute != nullptr;
       attribute = attribute->next)
    attribute->name = DecodeName(attribute->name);
}

/// Appends a text and returns `next`; null when the text could not be decoded or memory runs out.
const char* Parser::AppendText(NodeType type, TreeText text, const char* next) {
  TreeNode* const node = tree_.AdoptNode(type, text);
  if (node == nullptr) return nullptr;
  Tree::Append(*parent_, *node);
  return next;
}

}  // namespace dom
