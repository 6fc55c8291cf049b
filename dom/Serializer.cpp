#include "dom/Serializer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "dom/Blocks.h"
#include "dom/Tree.h"

namespace dom {
namespace {

/// The replacement of a character; empty if it is not escaped.
template <Search search>
constexpr std::string_view EscapeOf(char c) {
  constexpr bool is_value = search == Search::kValueSpecials;
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\t':
      return is_value ? "&#9;" : "";
    case '\n':
      return is_value ? "&#10;" : "";
    case '\r':
      return is_value ? "&#13;" : "";
    default:
      return "";
  }
}

constexpr std::size_t kDeepestIndent = 32;
constexpr auto kLineStart = [] {
  std::array<char, 1 + 2 * kDeepestIndent> line{};
  line.fill(' ');
  line[0] = '\n';
  return line;
}();

/// Up to this level, the start of a line fits two blocks.
constexpr std::size_t kUsualLevels = kBlock;

// These write to `out`, which has kBlock spare bytes, and return the new end.

template <std::size_t kSize>
char* CopyLiteral(const char (&literal)[kSize], char* out) {
  std::memcpy(out, literal, kSize - 1);
  return out + kSize - 1;
}

inline char* Copy(std::string_view text, char* out) {
  CopyText(text, out);
  return out + text.size();
}

/// Writes into the spare capacity of an OutputBuffer. After a failure it writes nothing.
class Writer {
 public:
  explicit Writer(OutputBuffer& output) : output_(output), out_(output.End()), end_(out_) {}
  ~Writer() { Finish(); }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  template <std::size_t kSize>
  void Put(const char (&literal)[kSize]) {
    if (Reserve(kSize)) out_ = CopyLiteral(literal, out_);
  }

  /// Writes a text between two literals.
  template <std::size_t kBefore, std::size_t kAfter>
  void Put(const char (&before)[kBefore], std::string_view text, const char (&after)[kAfter]) {
    if (!Reserve(kBefore + text.size() + kAfter)) return;
    out_ = CopyLiteral(after, Copy(text, CopyLiteral(before, out_)));
  }

  /// Writes an element without attributes and with a plain text if both are short, as most elements
  /// are. Otherwise writes nothing and returns false. StartLine has reserved the bytes.
  bool PutShortElement(std::string_view name, std::string_view text) {
    if (name.size() > kBlock || text.size() > kBlock || Room() < kShortElement) return false;
    char* const start = CopyLiteral("<", out_);
    CopyShort(name.data(), name.size(), start);
    char* out = CopyLiteral(">", start + name.size());
    std::memcpy(out, text.data(), kBlock);
    out = CopyLiteral("</", out + text.size());
    std::memmove(out, start, kBlock);  // Copies the name again, and more, to be overwritten.
    out_ = CopyLiteral(">", out + name.size());
    return true;
  }

  void PutAttribute(std::string_view name, const TreeText& value) {
    if (!Reserve(name.size() + 2 * kBlock)) return;  // Plus a spare block.
    out_ = CopyLiteral("=\"", Copy(name, CopyLiteral(" ", out_)));
    if (value.is_plain && value.size <= kBlock) {
      std::memcpy(out_, value.data, kBlock);
      out_ = CopyLiteral("\"", out_ + value.size);
      return;
    }
    if (value.is_plain)
      PutPlain(value.View());
    else
      PutEscaped<Search::kValueSpecials>(value.View());
    Put("\"");
  }

  /// Writes a text with the characters of the set escaped.
  template <Search search>
  void PutEscaped(std::string_view text) {
    if (text.size() > kPiece) return PutPieces(text, &Writer::PutEscaped<search>);
    while (Reserve(text.size())) {
      out_ = CopyUpTo<search>(text, out_);
      if (text.empty()) return;
      const std::string_view escape = EscapeOf<search>(text.front());
      if (!Reserve(kBlock)) return;
      out_ = Copy(escape.empty() ? text.substr(0, 1) : escape, out_);
      text.remove_prefix(1);
    }
  }

  /// Writes a text unchanged.
  void PutPlain(std::string_view text) {
    if (text.size() > kPiece) return PutPieces(text, &Writer::PutPlain);
    if (Reserve(text.size())) out_ = Copy(text, out_);
  }

  void StartLine(std::size_t level) {
    if (!Reserve(kLineStart.size() + kShortElement)) return;
    if (level < kUsualLevels) {
      std::memcpy(out_, kLineStart.data(), 2 * kBlock);
    } else {
      std::memcpy(out_, kLineStart.data(), kLineStart.size());
      level = std::min(level, kDeepestIndent);
    }
    out_ += 1 + 2 * level;
  }

 private:
  /// The maximum size of a short element, plus a block because blocks are written whole.
  static constexpr std::size_t kShortElement = std::string_view("<></>").size() + 4 * kBlock;
  static constexpr std::size_t kPiece = std::size_t{32} << 10;

  /// Writes a long text in pieces, which needs little memory.
  void PutPieces(std::string_view text, void (Writer::*put)(std::string_view)) {
    for (; text.size() > kPiece; text.remove_prefix(kPiece)) (this->*put)(text.substr(0, kPiece));
    (this->*put)(text);
  }

  [[nodiscard]] std::size_t Room() const { return static_cast<std::size_t>(end_ - out_); }
  /// Reserves `count` bytes plus a block.
  bool Reserve(std::size_t count) { return Room() >= count + kBlock || Grow(count + kBlock); }

  bool Grow(std::size_t count) {
    Finish();
    const bool is_done = output_.Reserve(count);
    out_ = output_.End();
    end_ = is_done ? out_ + output_.Room() : out_;
    return is_done;
  }

  void Finish() {
    if (out_) output_.SetEnd(out_);
  }

  OutputBuffer& output_;
  char* out_;
  const char* end_;
};

/// Whether the children of an element, given by the first one, are on lines of their own.
bool HoldsLines(const TreeNode* child) {
  for (; child != nullptr; child = child->next)
    if (child->type != NodeType::kElement && child->type != NodeType::kComment) return false;
  return true;
}

/// Writes the children of a document and all their descendants.
class TreeWriter {
 public:
  explicit TreeWriter(OutputBuffer& output) : out_(output) {}

  /// Walks the tree by its links, without recursion.
  void Write(const TreeNode* top) {
    const TreeNode* node = top;
    while (true) {
      if (const TreeNode* const child = Open(*node)) {
        ++level_;
        node = child;
      } else {
        node = CloseUpToNext(node, top);
        if (node == nullptr) break;
      }
      StartLine();
    }
    out_.Put("\n");
  }

 private:
  /// Writes a node; of an element with children only the start tag, and then returns the first
  /// child. A single text is written with its element.
  const TreeNode* Open(const TreeNode& node) {
    // Most nodes are elements.
    if (node.type == NodeType::kElement) return OpenElement(static_cast<const TreeElement&>(node));
    switch (node.type) {
      case NodeType::kText:
      case NodeType::kCDATASection:
        PutText(node);
        break;
      case NodeType::kComment:
        out_.Put("<!--", node.Text(), "-->");
        break;
      case NodeType::kProcessingInstruction:
        out_.Put("<?", node.Text(), "");
        PutData(" ", static_cast<const TreeElement&>(node), "");
        out_.Put("?>");
        break;
      case NodeType::kDocumentType:
        out_.Put("<!DOCTYPE ", node.Text(), "");
        PutData(" SYSTEM \"", static_cast<const TreeElement&>(node), "\"");
        out_.Put(">");
        break;
      case NodeType::kElement:
      case NodeType::kDocument:
      case NodeType::kNone:
        break;
    }
    return nullptr;
  }

  const TreeNode* OpenElement(const TreeElement& element) {
    const TreeNode* const child = element.first_child;
    const bool is_one_child = child != nullptr && child->next == nullptr;
    if (is_one_child && child->is_plain && element.first_attribute == nullptr &&
        out_.PutShortElement(element.Text(), child->Text()))
      return nullptr;
    const bool is_one_text = is_one_child && IsText(*child);
    PutStart(element);
    if (child == nullptr || (is_one_text && IsEmptyText(*child))) {
      out_.Put("/>");
      return nullptr;
    }
    out_.Put(">");
    if (is_one_text) {
      PutText(*child);
      out_.Put("</", element.Text(), ">");
      return nullptr;
    }
    if (inline_root_ == nullptr && element.may_hold_text && !HoldsLines(child))
      inline_root_ = &element;
    return child;
  }

  static bool IsEmptyText(const TreeNode& node) {
    return node.type == NodeType::kText && node.text_size == 0;
  }

  void PutStart(const TreeElement& element) {
    out_.Put("<", element.Text(), "");
    for (const TreeAttribute* attribute = element.first_attribute; attribute != nullptr;
         attribute = attribute->next)
      out_.PutAttribute(attribute->name.View(), attribute->value);
  }

  /// Writes the end tags of the elements that end after `node`, up to and including `top`. Returns
  /// the next node; null at the end.
  const TreeNode* CloseUpToNext(const TreeNode* node, const TreeNode* top) {
    while (node != top) {
      if (node->next != nullptr) return node->next;
      node = node->parent;
      --level_;
      StartLine();
      if (inline_root_ == node) inline_root_ = nullptr;
      out_.Put("</", node->Text(), ">");
    }
    return nullptr;
  }

  void PutText(const TreeNode& node) {
    if (node.is_plain) {
      out_.PutPlain(node.Text());
    } else if (node.type == NodeType::kText) {
      out_.PutEscaped<Search::kTextSpecials>(node.Text());
    } else {
      out_.Put("<![CDATA[");
      out_.PutPlain(node.Text());
      out_.Put("]]>");
    }
  }

  /// Writes the data of an instruction or the system identifier of a document type, if not empty.
  template <std::size_t kBefore, std::size_t kAfter>
  void PutData(const char (&before)[kBefore], const TreeElement& node,
               const char (&after)[kAfter]) {
    const TreeAttribute* const data = node.first_attribute;
    if (data != nullptr && data->value.size != 0) out_.Put(before, data->value.View(), after);
  }

  void StartLine() {
    if (inline_root_ == nullptr) out_.StartLine(level_);
  }

  Writer out_;
  std::size_t level_ = 0;
  const TreeNode* inline_root_ = nullptr;  ///< The element inside which no white space is added.
};

}  // namespace

bool Serialize(const Document& document, OutputBuffer& output) {
  if (!document.IsComplete()) return false;
  if (document.tree_) {
    TreeWriter writer(output);
    const TreeNode* node = document.tree_->Root()->first_child;
    for (; node != nullptr; node = node->next) writer.Write(node);
  }
  return !output.HasFailed();
}

}  // namespace dom
