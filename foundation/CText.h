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

/// Room to reserve when a text is constructed, in characters (the NUL comes on top).
struct TTextCapacity {
  std::uint32_t characters;
};

/// An 8-bit, NUL-terminated text. Owns its characters. The stored length (GetLength) counts the
/// NUL; positions and counts of the operations of this class are in characters, without it. An
/// empty text has length 0 (nothing stored) or 1 (only the NUL). Inner NULs are characters like
/// others, save where C strings are compared. A new text and one assigned something empty never
/// allocate.
///
/// `==` and `!=` ignore case. Compare exactly with Equals, or compare views.
///
/// Nothing throws. When memory (or the room of a fixed buffer) does not suffice, the characters
/// stay as they were; null pointers do nothing.
class CText : public CData {
 public:
  CText() = default;
  CText(std::string_view text) { AssignToNew(text); }  // NOLINT(google-explicit-constructor)
  CText(const char* text) {                            // NOLINT(google-explicit-constructor)
    if (text != nullptr) AssignToNew(text);
  }
  /// A text of one character; of none when it is 0.
  explicit CText(char character) {
    if (character != 0) AssignToNew({&character, 1});
  }
  explicit CText(TTextCapacity room);
  CText(const CText& other) : CText(other.View()) {}
  CText(CText&& other) noexcept = default;
  ~CText() override = default;

  CText& operator=(const CText& other) { return Assign(other), *this; }
  CText& operator=(CText&& other) noexcept = default;
  CText& operator=(std::string_view text) { return Assign(text), *this; }
  CText& operator=(const char* text) { return Assign(text), *this; }
  CText& operator=(char character) { return Assign(character), *this; }
  CText& operator=(std::int32_t value) { return Assign(value), *this; }
  CText& operator=(std::uint32_t value) { return Assign(value), *this; }

  // --- The operations of CData, as texts do them.

  /// Where the length is cut, the last byte kept becomes the NUL.
  bool Reserve(std::uint32_t size) override;

  /// Ignore case.
  [[nodiscard]] bool EqualsBytes(const void* characters, std::uint32_t count) const override;
  [[nodiscard]] bool EqualsData(const CData& other) const override;

  /// `count` characters; the NUL is added. Returns the new length (with the NUL). When there is no
  /// room for them, the old characters stay, but a text that was not empty gets one more NUL behind
  /// its own, counted in its length, if that fits the storage (kept on purpose).
  std::uint32_t Set(const void* characters, std::uint32_t count,
                    std::uint32_t capacity_hint = 0) override;

  /// Takes over the bytes of a text or buffer; the last byte becomes the NUL, whatever it was.
  void Assign(const CData& other) override;

  /// Copy out as a C string: as many characters as fit with their NUL. Return the number of
  /// characters; 0 for an empty text or a null destination.
  std::uint32_t CopyOutRange(void* destination, std::uint32_t size, std::uint32_t offset,
                             std::uint32_t count) const override;
  std::uint32_t CopyOut(void* destination, std::uint32_t size) const override;

  /// The range is of characters; a target that is a text adds its own NUL.
  void Extract(CData& target, std::uint32_t offset, std::uint32_t count) const override;

  /// As in CData. Bytes put behind the NUL get a NUL of their own.
  std::uint32_t Splice(std::uint32_t position, std::uint32_t remove_count, const void* bytes,
                       std::uint32_t insert_count) override;

  // --- The virtual operations that texts add, in their order.

  /// Copy out with the number of characters in front, in one byte, as legacy files hold names: as
  /// many characters (at most 255) as fit with that byte and a NUL. Return the bytes copied behind
  /// the first one, the NUL among them; 0 for an empty text, whose first byte is 0.
  virtual std::uint32_t CopyOutRangePrefixed(void* destination, std::uint32_t size,
                                             std::uint32_t offset, std::uint32_t count) const;
  virtual std::uint32_t CopyOutPrefixed(void* destination, std::uint32_t size) const;

  /// Splices the characters of `other`; an empty text is assigned them.
  virtual void SpliceText(std::uint32_t position, std::uint32_t remove_count, const CText& other);

  /// Replace every occurrence, found from the left; the search goes on behind what was inserted.
  /// An empty `find` does nothing. As many are replaced as there is room for.
  virtual void ReplaceAllIgnoringCase(const CText& find, const CText& replacement);
  virtual void ReplaceAll(const CText& find, const CText& replacement);
  void ReplaceAll(const char* find, const char* replacement) {
    if (find != nullptr && replacement != nullptr)
      ReplaceMatches(find, replacement, CaseSensitivity::kExact);
  }

  /// Replaces the occurrence with that number, from 1, if there are as many; occurrences do not
  /// overlap.
  virtual void ReplaceOccurrence(const CText& find, const CText& replacement,
                                 std::uint32_t occurrence, CaseSensitivity sensitivity);

  /// For kExact the characters must have a NUL at `count`: it is compared, too.
  [[nodiscard]] virtual bool EqualsCharacters(const char* characters, std::uint32_t count,
                                              CaseSensitivity sensitivity) const;
  [[nodiscard]] virtual bool Equals(const CText& other, CaseSensitivity sensitivity) const;

  /// Whether this text and the characters begin alike: they are compared as far as the shorter one
  /// goes ("abc" and "abcdef" begin alike, either way).
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

  /// The decimal number at the beginning, modulo 2^32: white space is skipped, a sign is taken, the
  /// rest is ignored. 0 without digits. Converted to std::int32_t it is the signed number.
  [[nodiscard]] std::uint32_t ToNumber() const;

  // --- Assigning and appending. A character 0 is no character. The texts may be parts of this one.

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

  // --- Searching. The result is a position or kNoIndex. An empty pattern is found at once.

  /// Forward: the first match at `start` or behind it. Backward: the last match that ends at
  /// `start` (its last character stands before that position) or before it.
  [[nodiscard]] std::uint32_t Find(std::string_view pattern, std::uint32_t start = 0,
                                   SearchDirection direction = SearchDirection::kForward) const;
  [[nodiscard]] std::uint32_t FindIgnoringCase(std::string_view pattern) const;

  // --- Changing

  void ToUpperCase();
  void ToLowerCase();
  void TrimStart(TrimSet set);
  void TrimEnd(TrimSet set);
  void FilterCharacters(std::string_view set, CharacterFilter filter);

  /// Leaves the `count` characters from `start` on, or fewer at the end. Does nothing when `start`
  /// or `count` is greater than the number of characters.
  void SubstringInPlace(std::uint32_t start, std::uint32_t count);

  /// A new text of the first `count` characters, or of all.
  [[nodiscard]] CText Left(std::uint32_t count) const;

  /// At least two characters, the first `'` or `"`, the last the same.
  [[nodiscard]] bool IsQuoted() const;
  /// Removes both quotes of a quoted text.
  void Unquote();

  /// Breaks lines: where the column reaches `width`, the nearest blank (space or tab) up to there
  /// on that line becomes a return. A tab counts as 8 columns; a word that is too long stays whole.
  void WordWrap(std::uint32_t width);

  friend bool operator==(const CText& a, const CText& b) { return a.EqualsData(b); }
  friend bool operator==(const CText& a, std::string_view b) {
    return a.EqualsBytes(b.data(), Length32(b));
  }
  friend bool operator==(const CText& a, const char* b) {
    return a == (b == nullptr ? std::string_view{} : std::string_view(b));
  }

  /// Orders C strings (the characters up to the first NUL), ignoring case; an empty text is first.
  friend bool operator<(const CText& a, const CText& b) { return a.Compare(b) < 0; }
  friend bool operator>(const CText& a, const CText& b) { return a.Compare(b) > 0; }
  friend bool operator<=(const CText& a, const CText& b) { return a.Compare(b) <= 0; }
  friend bool operator>=(const CText& a, const CText& b) { return a.Compare(b) >= 0; }

 private:
  /// The size as a count; one that no text can hold stays one (kNoIndex).
  static std::uint32_t Length32(std::string_view text) {
    return text.size() < kNoIndex ? static_cast<std::uint32_t>(text.size()) : kNoIndex;
  }

  /// What a text without storage is assigned.
  void AssignToNew(std::string_view text);
  [[nodiscard]] int Compare(const CText& other) const;
  void CutTo(std::uint32_t characters);
  void RemoveFront(std::uint32_t characters);
  void ReplaceMatches(std::string_view find, std::string_view replacement,
                      CaseSensitivity sensitivity);
};

}  // namespace zaf
