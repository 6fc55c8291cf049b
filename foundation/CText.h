#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "foundation/CData.h"
#include "foundation/CaseFolding.h"
#include "foundation/FourCharCode.h"

namespace zaf {

enum class SearchDirection { kForward, kBackward };
enum class TrimSet { kSpaces, kWhiteSpace };  ///< White space: space, tab, line feed, return.
enum class CharacterFilter { kKeep, kDrop };

/// The number of characters to reserve for when a text is constructed, without the NUL.
struct TTextCapacity {
  std::uint32_t characters;
};

/// Parses a decimal number: leading white space is skipped, then an optional sign and digits; the
/// rest is ignored. The result is modulo 2^32, signed; 0 without digits.
[[nodiscard]] std::int32_t ParseNumber(std::string_view text);

/// An 8-bit, NUL-terminated text. Owns its characters. The stored length (GetLength) counts the
/// NUL; positions and counts of the operations of this class are in characters, without it. An
/// empty text has length 0 (nothing stored) or 1 (only the NUL). Inner NULs are ordinary
/// characters, except where C strings are compared. Neither a new text nor an empty assignment
/// allocates.
///
/// `==` and `!=` ignore case. Compare exactly with Equals, or compare views.
///
/// Nothing throws. When memory (or the space of a fixed buffer) is insufficient, the characters are
/// unchanged. A null pointer is not a text: searches do not find it, it equals only an empty text,
/// and changes do nothing.
class CText : public CData {
 public:
  CText() = default;
  CText(std::string_view text) { AssignToNew(text); }  // NOLINT(google-explicit-constructor)
  CText(const char* text) {                            // NOLINT(google-explicit-constructor)
    if (text != nullptr) AssignToNew(text);
  }
  /// A text of one character; empty when it is 0.
  explicit CText(char character) {
    if (character != 0) AssignToNew({&character, 1});
  }
  explicit CText(TTextCapacity capacity);
  CText(const CText& other) : CText(other.View()) {}
  CText(CText&& other) noexcept = default;

  CText& operator=(const CText& other) { return Assign(other), *this; }
  CText& operator=(CText&& other) noexcept = default;
  CText& operator=(std::string_view text) { return Assign(text), *this; }
  CText& operator=(const char* text) { return Assign(text), *this; }
  CText& operator=(char character) { return Assign(character), *this; }
  CText& operator=(std::int32_t value) { return Assign(value), *this; }
  CText& operator=(std::uint32_t value) { return Assign(value), *this; }

  // --- Operations of CData with text semantics.

  /// When the length is cut, the last byte kept becomes the NUL.
  bool Reserve(std::uint32_t size) override;

  /// Ignore case.
  [[nodiscard]] bool EqualsBytes(const void* characters, std::uint32_t count) const override;
  [[nodiscard]] bool EqualsData(const CData& other) const override;

  /// Sets `count` characters and adds the NUL; 0 clears. When reserving fails, the old characters
  /// remain, but a text that was not empty gets a second NUL, counted in its length, if the storage
  /// has space for it (kept deliberately).
  TStoredData Set(const void* characters, std::uint32_t count,
                  std::uint32_t capacity_hint = 0) override;

  /// Copies the bytes of a text or buffer; the last byte is overwritten by the NUL.
  void Assign(const CData& other) override;

  /// Copy out as a C string: as many characters as fit with their NUL. Return the number of
  /// characters; 0 for an empty text or a null destination.
  std::uint32_t CopyOutRange(void* destination, std::uint32_t size, std::uint32_t offset,
                             std::uint32_t count) const override;
  std::uint32_t CopyOut(void* destination, std::uint32_t size) const override;

  /// The range is of characters; a target that is a text adds its own NUL.
  void Extract(CData& target, std::uint32_t offset, std::uint32_t count) const override;

  /// As in CData. Bytes inserted after the NUL are followed by another NUL.
  std::uint32_t Splice(std::uint32_t position, std::uint32_t remove_count, const void* bytes,
                       std::uint32_t insert_count) override;

  // --- Further virtual operations, in slot order.

  /// Copy out as a length-prefixed string: one byte with the number of characters (at most 255),
  /// then as many of them as fit, then a NUL. Return the bytes copied after the first one, the NUL
  /// included; 0 for an empty text, whose first byte is 0.
  virtual std::uint32_t CopyOutRangePrefixed(void* destination, std::uint32_t size,
                                             std::uint32_t offset, std::uint32_t count) const;
  virtual std::uint32_t CopyOutPrefixed(void* destination, std::uint32_t size) const;

  /// Splices the characters of `other`; an empty text is assigned `other`.
  virtual void SpliceText(std::uint32_t position, std::uint32_t remove_count, const CText& other);

  /// Replace every occurrence, found from the left; the search continues after the inserted text.
  /// An empty `find` does nothing. When memory is insufficient, only the first ones that fit are
  /// replaced.
  virtual void ReplaceAllIgnoringCase(const CText& find, const CText& replacement);
  virtual void ReplaceAll(const CText& find, const CText& replacement);
  void ReplaceAll(const char* find, const char* replacement) {
    if (find != nullptr && replacement != nullptr)
      ReplaceMatches(find, replacement, CaseSensitivity::kExact);
  }

  /// Replaces the occurrence with that number, counted from 1, if there is one; occurrences do not
  /// overlap.
  virtual void ReplaceOccurrence(const CText& find, const CText& replacement,
                                 std::uint32_t occurrence, CaseSensitivity sensitivity);

  /// For kExact the characters must be terminated: the NUL at `count` is compared, too.
  [[nodiscard]] virtual bool EqualsCharacters(const char* characters, std::uint32_t count,
                                              CaseSensitivity sensitivity) const;
  [[nodiscard]] virtual bool Equals(const CText& other, CaseSensitivity sensitivity) const;

  /// Compares up to the shorter length: true when either is a prefix of the other.
  [[nodiscard]] virtual bool PrefixEquals(const char* characters, std::uint32_t count,
                                          CaseSensitivity sensitivity) const;

  // --- Access

  /// The characters, without the NUL; valid until the text changes.
  [[nodiscard]] std::string_view View() const {
    return GetLength() == 0 ? std::string_view{}
                            : std::string_view{CData::GetData(), GetLength() - 1};
  }
  operator std::string_view() const { return View(); }  // NOLINT(google-explicit-constructor)
  [[nodiscard]] const char* begin() const { return View().data(); }
  [[nodiscard]] const char* end() const { return begin() + GetCharacterCount(); }

  /// Never null.
  [[nodiscard]] const char* GetCString() const { return &ByteAt(0); }

  [[nodiscard]] bool IsEmpty() const { return GetLength() <= 1; }
  [[nodiscard]] std::uint32_t GetCharacterCount() const {
    return GetLength() == 0 ? 0 : GetLength() - 1;
  }

  /// The first four characters as a code; missing ones are 0.
  [[nodiscard]] FourCharCode GetFourCharCode() const { return CodeOfText(View()); }

  /// The number at the start, by ParseNumber.
  [[nodiscard]] std::uint32_t ToNumber() const {
    return static_cast<std::uint32_t>(ParseNumber(View()));
  }

  // --- Assigning and appending. The character 0 counts as none. Arguments may be parts of this
  // text. Appending to an empty text assigns.

  void Assign(std::string_view text) {
    if (GetCapacity() == 0)
      AssignToNew(text);
    else
      Set(text.data(), Length32(text));
  }
  void Assign(const char* text) { Assign(text == nullptr ? std::string_view{} : text); }
  void Assign(char character) { Set(&character, character == 0 ? 0 : 1); }
  void Assign(std::int32_t value);
  void Assign(std::uint32_t value);

  void Append(std::string_view text);
  void Append(const CText& text) { Append(text.View()); }
  void Append(const char* text) {
    if (text != nullptr) Append(std::string_view(text));
  }
  void Append(char character) {
    if (character != 0) Append(std::string_view(&character, 1));
  }
  void Append(std::int32_t value);
  void Append(std::uint32_t value);

  // --- Searching. Returns a position or kNoIndex. An empty pattern matches at the start position.
  // Takes time up to the product of both sizes when text and pattern repeat themselves.

  /// Forward: the first match at or after `start`. Backward: the last match that ends at or before
  /// `start` (its last character is before that position).
  [[nodiscard]] std::uint32_t Find(std::string_view pattern, std::uint32_t start = 0,
                                   SearchDirection direction = SearchDirection::kForward) const;
  [[nodiscard]] std::uint32_t Find(const char* pattern, std::uint32_t start = 0,
                                   SearchDirection direction = SearchDirection::kForward) const {
    return pattern == nullptr ? kNoIndex : Find(std::string_view(pattern), start, direction);
  }
  [[nodiscard]] std::uint32_t FindIgnoringCase(std::string_view pattern) const;
  [[nodiscard]] std::uint32_t FindIgnoringCase(const char* pattern) const {
    return pattern == nullptr ? kNoIndex : FindIgnoringCase(std::string_view(pattern));
  }

  // --- Changing

  void ToUpperCase();
  void ToLowerCase();
  void TrimStart(TrimSet set);
  void TrimEnd(TrimSet set);
  void FilterCharacters(std::string_view set, CharacterFilter filter);
  void FilterCharacters(const char* set, CharacterFilter filter) {
    if (set != nullptr) FilterCharacters(std::string_view(set), filter);
  }

  /// Keeps only the `count` characters from `start` on, or fewer at the end. Does nothing when
  /// `start` or `count` is greater than the number of characters.
  void SubstringInPlace(std::uint32_t start, std::uint32_t count);

  /// A new text of the first `count` characters, or of all when there are fewer.
  [[nodiscard]] CText Left(std::uint32_t count) const;

  /// Whether there are at least two characters, the first is `'` or `"` and the last is the same.
  [[nodiscard]] bool IsQuoted() const;
  /// Removes both quotes of a quoted text.
  void Unquote();

  /// Breaks lines: where the column reaches `width`, the nearest space or tab before it on that
  /// line becomes a carriage return. A tab counts 8 columns. A line without one is left long.
  void WordWrap(std::uint32_t width);

  friend bool operator==(const CText& a, const CText& b) { return a.EqualsData(b); }
  friend bool operator==(const CText& a, std::string_view b) {
    return a.EqualsBytes(b.data(), Length32(b));
  }
  friend bool operator==(const CText& a, const char* b) {
    return a == (b == nullptr ? std::string_view{} : std::string_view(b));
  }

  /// Order C strings (the characters up to the first NUL) ignoring case; an empty text is first.
  friend bool operator<(const CText& a, const CText& b) { return a.Compare(b) < 0; }
  friend bool operator>=(const CText& a, const CText& b) { return a.Compare(b) >= 0; }

 private:
  /// The size as a count; kNoIndex, which no text can hold, when it is too large.
  static std::uint32_t Length32(std::string_view text) {
    return text.size() < kNoIndex ? static_cast<std::uint32_t>(text.size()) : kNoIndex;
  }

  /// Assigns to a text without storage.
  void AssignToNew(std::string_view text);
  [[nodiscard]] int Compare(const CText& other) const;
  void CutTo(std::uint32_t characters);
  void RemoveFront(std::uint32_t characters);
  void ReplaceMatches(std::string_view find, std::string_view replacement,
                      CaseSensitivity sensitivity);
};

}  // namespace zaf
