#pragma once

#include <cstring>
#include <string_view>

#include "dom/Blocks.h"
#include "dom/CharacterClasses.h"
#include "dom/Encoding.h"
#include "dom/ParseReport.h"
#include "dom/Tree.h"

namespace dom {

/// Reads the tokens of a document: white space, names, and texts with their references. The bytes
/// are not changed: a text is used in place or decoded into the memory of the tree.
///
/// Functions that read take the current place and return the place after the token; null when the
/// document is refused or memory runs out (then there is no fault, and the tree is incomplete).
class Scanner {
 protected:
  /// The construct that a text is part of, which determines how it is decoded.
  enum class Part {
    kText,   ///< References are replaced, line ends become LF.
    kCData,  ///< Line ends become LF.
    kValue,  ///< References are replaced, literal white space becomes blanks.
  };

  Scanner(std::string_view text, Tree& tree)
      : tree_(tree), begin_(text.data()), end_(begin_ + text.size()) {
    SetEncoding(Encoding::kUtf8);
  }

  /// Sets the encoding of the following characters; not UTF-16.
  void SetEncoding(Encoding encoding) {
    encoding_ = encoding;
    high_ = encoding == Encoding::kLatin1 ? HighCharacters::kPassed : HighCharacters::kFound;
  }

  [[nodiscard]] bool IsUtf8() const { return encoding_ == Encoding::kUtf8; }

  const char* Fail(const char* place, ParseFault fault) {
    fault_ = fault;
    fault_place_ = place;
    return nullptr;
  }
  /// The same for an unexpected character. Reports a more specific fault if the document ends there
  /// or the bytes are not a character.
  const char* FailAt(const char* place, ParseFault fault);

  /// The character at `p`; NUL, which no document may contain, at the end.
  [[nodiscard]] char Peek(const char* p) const { return p == end_ ? '\0' : *p; }
  template <std::size_t kSize>
  [[nodiscard]] bool StartsWith(const char* p, const char (&literal)[kSize]) const {
    return static_cast<std::size_t>(end_ - p) >= kSize - 1 &&
           std::memcmp(p, literal, kSize - 1) == 0;
  }
  /// Finds the first occurrence of `text` from `p` on; null if not found.
  [[nodiscard]] const char* FindText(const char* p, std::string_view text) const;

  [[nodiscard]] const char* SkipSpace(const char* p) const {
    if (!IsSpace(Peek(p))) return p;
    ++p;
    return IsSpace(Peek(p)) ? Find<Search::kNotSpace>(p, end_) : p;
  }
  /// [5] Name. Returns `p` when there is no name.
  const char* SkipName(const char* p) {
    if (!IsAsciiNameStart(Peek(p))) return SkipOtherName(p);
    p = Find<Search::kNotName>(p, end_);
    return IsHigh(Peek(p)) ? SkipOtherName(p, IsNameCharacter) : p;
  }
  /// Whether all characters are allowed; sets the fault if not.
  bool CheckCharacters(const char* p, const char* end);

  static TreeText InPlace(const char* p, const char* end) {
    return {p, static_cast<std::uint32_t>(end - p)};
  }
  /// Decodes the text between `p` and `end`. The result's data is null on failure.
  TreeText Decode(const char* p, const char* end, Part part);
  /// Converts a name to ISO-8859-1, with `?` for other characters.
  TreeText DecodeName(TreeText name);

  /// Computes the line, column and offset of the fault. `source` is the encoding of the document
  /// before it was converted for the scanner.
  void Locate(Encoding source, ParseReport& report) const;

  Tree& tree_;
  const char* begin_;
  const char* end_;
  HighCharacters high_;
  /// Whether references to entities that are not predefined stay as written.
  bool keeps_references_ = false;
  /// Whether a name with characters other than ASCII was found, which has to be decoded.
  bool has_other_names_ = false;
  ParseFault fault_ = ParseFault::kNone;
  std::size_t replaced_count_ = 0;

 private:
  static constexpr bool IsAsciiNameStart(char c) {
    return IsAsciiLetter(c) || c == '_' || c == ':';
  }
  const char* SkipOtherName(const char* p);
  const char* SkipOtherName(const char* p, bool (*is_in_name)(char32_t));
  char* CopyUpToSpecial(std::string_view& text, Part part, char* target) const;
  const char* DecodeSpecial(const char* p, Part part, char*& target);
  const char* DecodeReference(const char* p, char*& target);
  const char* DecodeNumber(const char* p, char*& target);
  char ToLatin1(char32_t code);

  Encoding encoding_;
  const char* fault_place_ = nullptr;
};

}  // namespace dom
