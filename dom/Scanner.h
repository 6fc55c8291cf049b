#pragma once

#include <cstring>
#include <string_view>

#include "dom/Blocks.h"
#include "dom/CharacterClasses.h"
#include "dom/Encoding.h"
#include "dom/ParseReport.h"
#include "dom/Tree.h"

namespace dom {

/// Reads the smallest parts of a document: white space, names, and texts with their references. The
/// bytes stay as they are: a text is used where it is, or decoded into the memory of the tree.
///
/// Functions that read something take the place where it begins and return the place after it; null
/// when the document is refused or memory runs out (then there is no fault, and the tree is
/// incomplete).
class Scanner {
 protected:
  /// What a text is part of, which decides how it is decoded.
  enum class Part {
    kText,   ///< References are replaced, line ends become LF.
    kCData,  ///< Line ends become LF.
    kValue,  ///< References are replaced, literal white space becomes blanks.
  };

  Scanner(std::string_view text, Tree& tree)
      : tree_(tree), begin_(text.data()), end_(begin_ + text.size()) {
    SetEncoding(Encoding::kUtf8);
  }

  /// Of the characters from here on; not UTF-16.
  void SetEncoding(Encoding encoding) {
    encoding_ = encoding;
    high_ = encoding == Encoding::kLatin1 ? HighCharacters::kPassed : HighCharacters::kFound;
  }

  const char* Fail(const char* place, ParseFault fault) {
    fault_ = fault;
    fault_place_ = place;
    return nullptr;
  }
  /// The same where something else is expected. The fault may be a worse one: that the document
  /// ends there, or that this is no character.
  const char* FailAt(const char* place, ParseFault fault);

  /// The character at a place; NUL, which no document may hold, at the end.
  [[nodiscard]] char Peek(const char* p) const { return p == end_ ? '\0' : *p; }
  template <std::size_t kSize>
  [[nodiscard]] bool StartsWith(const char* p, const char (&literal)[kSize]) const {
    return static_cast<std::size_t>(end_ - p) >= kSize - 1 &&
           std::memcmp(p, literal, kSize - 1) == 0;
  }
  /// The first place of `text` from `p` on; null when it is not there.
  [[nodiscard]] const char* FindText(const char* p, std::string_view text) const;

  [[nodiscard]] const char* SkipSpace(const char* p) const {
    if (!IsSpace(Peek(p))) return p;
    ++p;
    return IsSpace(Peek(p)) ? Find<Search::kNotSpace>(p, end_) : p;
  }
  /// [5] Name. Returns `p` when there is none.
  const char* SkipName(const char* p) {
    if (!IsAsciiNameStart(Peek(p))) return SkipOtherName(p);
    p = Find<Search::kNotName>(p, end_);
    return IsHigh(Peek(p)) ? SkipOtherName(p, IsNameCharacter) : p;
  }
  /// Whether all characters are allowed; sets the fault when not.
  bool CheckCharacters(const char* p, const char* end);

  static TreeText InPlace(const char* p, const char* end) {
    return {p, static_cast<std::uint32_t>(end - p)};
  }
  /// The text between `p` and `end`, decoded. Its data is null when this fails.
  TreeText Decode(const char* p, const char* end, Part part);
  /// A name in ISO-8859-1, with `?` for other characters.
  TreeText DecodeName(TreeText name);

  /// Finds the line, column and offset of the fault. `source` is the encoding of the text from
  /// which the scanner's was made.
  void Locate(Encoding source, ParseReport& report) const;

  Tree& tree_;
  const char* begin_;
  const char* end_;
  HighCharacters high_;
  /// References to entities that are not predefined stay as they are written.
  bool keeps_references_ = false;
  /// A name was found that is not ASCII and has to be decoded.
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
