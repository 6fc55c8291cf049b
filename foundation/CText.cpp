#include "foundation/CText.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace zaf {
namespace {

constexpr bool IsBlank(char character, TrimSet set) {
  if (character == ' ') return true;
  return set == TrimSet::kWhiteSpace &&
         (character == '\t' || character == '\n' || character == '\r');
}

/// The decimal digits of a number.
class TDigits {
 public:
  template <class Number>
  explicit TDigits(Number value)
      : size_(static_cast<std::size_t>(
            std::to_chars(characters_, characters_ + sizeof characters_, value).ptr -
            characters_)) {}
  [[nodiscard]] std::string_view View() const { return {characters_, size_}; }

 private:
  char characters_[16];
  std::size_t size_;
};

bool EqualViews(std::string_view a, std::string_view b, CaseSensitivity sensitivity) {
  return sensitivity == CaseSensitivity::kExact ? a == b : EqualsIgnoringCase(a, b);
}

/// Returns the position of the first match of `pattern` in `text` at or after `start`; npos without
/// one. An empty pattern matches at `start`, if that is not after the end.
std::size_t FindMatch(std::string_view text, std::string_view pattern, std::size_t start,
                      CaseSensitivity sensitivity) {
  if (sensitivity == CaseSensitivity::kExact) return text.find(pattern, start);
  if (start > text.size()) return std::string_view::npos;
  const auto is_same = [](char a, char b) { return ToUpper(a) == ToUpper(b); };
  const auto match = std::search(text.begin() + static_cast<std::ptrdiff_t>(start), text.end(),
                                 pattern.begin(), pattern.end(), is_same);
  if (match == text.end() && !pattern.empty()) return std::string_view::npos;
  return static_cast<std::size_t>(match - text.begin());
}

/// The number of matches that do not overlap, found from the left. `find` is not empty.
std::uint64_t CountMatches(std::string_view text, std::string_view find,
                           CaseSensitivity sensitivity) {
  std::uint64_t count = 0;
  std::size_t match = FindMatch(text, find, 0, sensitivity);
  for (; match != std::string_view::npos; ++count)
    match = FindMatch(text, find, match + find.size(), sensitivity);
  return count;
}

std::uint32_t AsIndex(std::size_t place) {
  return place == std::string_view::npos ? kNoIndex : static_cast<std::uint32_t>(place);
}

}  // namespace

std::int32_t ParseNumber(std::string_view text) {
  std::size_t at = text.find_first_not_of(" \t\n\v\f\r");
  if (at == std::string_view::npos) return 0;
  const bool is_negative = text[at] == '-';
  if (is_negative || text[at] == '+') ++at;
  std::uint32_t value = 0;
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at)
    value = value * 10 + static_cast<std::uint32_t>(text[at] - '0');
  return static_cast<std::int32_t>(is_negative ? 0 - value : value);
}

CText::CText(TTextCapacity capacity) {
  if (capacity.characters < kNoIndex) AllocateExactly(capacity.characters + 1);
}

void CText::AssignToNew(std::string_view text) {
  if (text.empty() || text.size() >= kNoIndex) return;
  const auto size = static_cast<std::uint32_t>(text.size());
  if (!AllocateExactly(size + 1)) return;
  std::memcpy(Buffer(), text.data(), size);
  Buffer()[size] = 0;
  SetLength(size + 1);
}

bool CText::Reserve(std::uint32_t size) {
  const std::uint32_t old_length = GetLength();
  if (!CData::Reserve(size)) return false;
  if (GetLength() < old_length && GetLength() != 0) Buffer()[GetLength() - 1] = 0;
  return true;
}

bool CText::EqualsBytes(const void* characters, std::uint32_t count) const {
  if (count != GetCharacterCount()) return false;
  return count == 0 || (characters != nullptr &&
                        EqualsIgnoringCase(View(), {static_cast<const char*>(characters), count}));
}

bool CText::EqualsData(const CData& other) const {
  // A plain buffer need not end with a NUL.
  std::string_view characters = AsText(other.Bytes());
  if (characters.ends_with('\0')) characters.remove_suffix(1);
  return EqualsIgnoringCase(View(), characters);
}

TStoredData CText::Set(const void* characters, std::uint32_t count, std::uint32_t capacity_hint) {
  if (count == 0) Clear();
  if (count == 0 || characters == nullptr) return {Buffer(), 0};
  if (IsInStorage(characters)) {
    CData::Set(characters, count, capacity_hint);
    if (GetLength() == GetCapacity() && !Reserve(GetLength() + 1)) SetLength(GetLength() - 1);
  } else if (count == kNoIndex || !Reserve(std::max(count + 1, capacity_hint))) {
    if (GetLength() <= 1 || GetLength() == GetCapacity()) return {Buffer(), GetLength()};
  } else {
    std::memcpy(Buffer(), characters, count);
    SetLength(count);
  }
  Buffer()[GetLength()] = 0;
  SetLength(GetLength() + 1);
  return {Buffer(), GetLength()};
}

void CText::Assign(const CData& other) {
  if (other.GetLength() == 1 && GetCapacity() == 0) return;  // Only a NUL: an empty text.
  CData::Assign(other);
  if (GetLength() != 0) Buffer()[GetLength() - 1] = 0;
}

std::uint32_t CText::CopyOutRange(void* destination, std::uint32_t size, std::uint32_t offset,
                                  std::uint32_t count) const {
  if (destination == nullptr || size == 0) return 0;
  const std::string_view characters =
      offset < GetCharacterCount() ? View().substr(offset, std::min(count, size - 1)) : "";
  if (!characters.empty()) std::memcpy(destination, characters.data(), characters.size());
  static_cast<char*>(destination)[characters.size()] = 0;
  return static_cast<std::uint32_t>(characters.size());
}

std::uint32_t CText::CopyOut(void* destination, std::uint32_t size) const {
  return CText::CopyOutRange(destination, size, 0, GetCharacterCount());
}

void CText::Extract(CData& target, std::uint32_t offset, std::uint32_t count) const {
  const std::uint32_t characters = GetCharacterCount();
  CData::Extract(target, offset, offset < characters ? std::min(count, characters - offset) : 0);
}

std::uint32_t CText::Splice(std::uint32_t position, std::uint32_t remove_count, const void* bytes,
                            std::uint32_t insert_count) {
  CData::Splice(position, remove_count, bytes, insert_count);
  const std::uint32_t length = GetLength();
  if (length == 0 || Buffer()[length - 1] == 0) return length;
  if (length < GetCapacity() || Reserve(length + 1)) SetLength(length + 1);
  Buffer()[GetLength() - 1] = 0;
  return GetLength();
}

std::uint32_t CText::CopyOutRangePrefixed(void* destination, std::uint32_t size,
                                          std::uint32_t offset, std::uint32_t count) const {
  if (destination == nullptr || size == 0) return 0;
  constexpr std::uint32_t kGreatestCount = 255;
  auto* bytes = static_cast<char*>(destination);
  const std::uint32_t copied =
      CText::CopyOutRange(bytes + 1, size - 1, offset, std::min(count, kGreatestCount));
  bytes[0] = static_cast<char>(copied);
  return copied == 0 ? 0 : copied + 1;
}

std::uint32_t CText::CopyOutPrefixed(void* destination, std::uint32_t size) const {
  return CText::CopyOutRangePrefixed(destination, size, 0, GetCharacterCount());
}

void CText::SpliceText(std::uint32_t position, std::uint32_t remove_count, const CText& other) {
  if (IsEmpty())
    Assign(other);
  else
    Splice(position, remove_count, other.Buffer(), other.GetCharacterCount());
}

void CText::ReplaceAllIgnoringCase(const CText& find, const CText& replacement) {
  ReplaceMatches(find.View(), replacement.View(), CaseSensitivity::kIgnore);
}

void CText::ReplaceAll(const CText& find, const CText& replacement) {
  ReplaceMatches(find.View(), replacement.View(), CaseSensitivity::kExact);
}

void CText::ReplaceMatches(std::string_view find, std::string_view replacement,
                           CaseSensitivity sensitivity) {
  if (find.empty() || IsEmpty()) return;
  if (IsInStorage(find.data()) || IsInStorage(replacement.data())) {
    const CText find_copy(find);
    const CText replacement_copy(replacement);
    if (find_copy.View() == find && replacement_copy.View() == replacement)
      ReplaceMatches(find_copy.View(), replacement_copy.View(), sensitivity);
    return;
  }

  std::uint64_t replaced = CountMatches(View(), find, sensitivity);
  if (replaced == 0) return;

  // A growing text is first moved to the end of its future storage. The result is then built from
  // the front and never overtakes the read position.
  std::uint64_t shift = 0;
  if (replacement.size() > find.size()) {
    const std::uint64_t growth = replacement.size() - find.size();
    const std::uint64_t wanted = GetLength() + replaced * growth;
    if (wanted > GetCapacity() &&
        (wanted >= kNoIndex || !Reserve(static_cast<std::uint32_t>(wanted))))
      replaced = (GetCapacity() - GetLength()) / growth;
    shift = replaced * growth;
  }
  char* const buffer = Buffer();
  std::memmove(buffer + shift, buffer, GetLength());
  const std::string_view source(buffer + shift, GetLength() - 1);
  char* target = buffer;
  std::size_t read = 0;
  for (; replaced > 0; --replaced) {
    const std::size_t match = FindMatch(source, find, read, sensitivity);
    std::memmove(target, source.data() + read, match - read);
    target += match - read;
    target = std::copy(replacement.begin(), replacement.end(), target);
    read = match + find.size();
  }
  std::memmove(target, source.data() + read, source.size() - read + 1);
  const std::size_t size = static_cast<std::size_t>(target - buffer) + source.size() - read;
  SetLength(static_cast<std::uint32_t>(size + 1));
}

void CText::ReplaceOccurrence(const CText& find, const CText& replacement, std::uint32_t occurrence,
                              CaseSensitivity sensitivity) {
  if (find.IsEmpty() || occurrence == 0) return;
  std::size_t match = FindMatch(View(), find, 0, sensitivity);
  while (match != std::string_view::npos && --occurrence != 0)
    match = FindMatch(View(), find, match + find.GetCharacterCount(), sensitivity);
  if (match == std::string_view::npos) return;
  Splice(static_cast<std::uint32_t>(match), find.GetCharacterCount(), replacement.Buffer(),
         replacement.GetCharacterCount());
}

bool CText::EqualsCharacters(const char* characters, std::uint32_t count,
                             CaseSensitivity sensitivity) const {
  if (characters == nullptr) return IsEmpty();
  if (count != GetCharacterCount()) return false;
  return EqualViews(View(), {characters, count}, sensitivity) &&
         (sensitivity == CaseSensitivity::kIgnore || characters[count] == 0);
}

bool CText::Equals(const CText& other, CaseSensitivity sensitivity) const {
  return EqualViews(View(), other.View(), sensitivity);
}

bool CText::PrefixEquals(const char* characters, std::uint32_t count,
                         CaseSensitivity sensitivity) const {
  if (characters == nullptr) return IsEmpty();
  const std::uint32_t compared = std::min(GetCharacterCount(), count);
  return EqualViews(View().substr(0, compared), {characters, compared}, sensitivity);
}

void CText::Assign(std::int32_t value) { Assign(TDigits(value).View()); }
void CText::Assign(std::uint32_t value) { Assign(TDigits(value).View()); }
void CText::Append(std::int32_t value) { Append(TDigits(value).View()); }
void CText::Append(std::uint32_t value) { Append(TDigits(value).View()); }

void CText::Append(std::string_view text) {
  if (text.empty()) return;
  if (IsEmpty()) return Assign(text);
  const std::uint32_t count = GetCharacterCount();
  if (text.size() < GetCapacity() - count && !IsInStorage(text.data())) {
    std::memcpy(Buffer() + count, text.data(), text.size());
    Buffer()[count + text.size()] = 0;
    SetLength(static_cast<std::uint32_t>(count + text.size() + 1));
    return;
  }
  CData::Splice(count, 0, text.data(), Length32(text));
}

std::uint32_t CText::Find(std::string_view pattern, std::uint32_t start,
                          SearchDirection direction) const {
  return AsIndex(direction == SearchDirection::kForward ? View().find(pattern, start)
                                                        : View().substr(0, start).rfind(pattern));
}

std::uint32_t CText::FindIgnoringCase(std::string_view pattern) const {
  return AsIndex(FindMatch(View(), pattern, 0, CaseSensitivity::kIgnore));
}

void CText::ToUpperCase() { std::transform(begin(), end(), Buffer(), ToUpper); }

void CText::ToLowerCase() { std::transform(begin(), end(), Buffer(), ToLower); }

void CText::TrimStart(TrimSet set) {
  const char* first =
      std::find_if_not(begin(), end(), [set](char character) { return IsBlank(character, set); });
  RemoveFront(static_cast<std::uint32_t>(first - begin()));
}

void CText::TrimEnd(TrimSet set) {
  std::uint32_t count = GetCharacterCount();
  while (count != 0 && IsBlank(Buffer()[count - 1], set)) --count;
  CutTo(count);
}

void CText::FilterCharacters(std::string_view set, CharacterFilter filter) {
  std::array<bool, 256> is_in_set{};
  for (const char character : set) is_in_set[static_cast<unsigned char>(character)] = true;
  const bool is_dropped = filter == CharacterFilter::kDrop;
  char* const last = std::remove_if(Buffer(), Buffer() + GetCharacterCount(), [&](char character) {
    return is_in_set[static_cast<unsigned char>(character)] == is_dropped;
  });
  CutTo(static_cast<std::uint32_t>(last - Buffer()));
}

void CText::SubstringInPlace(std::uint32_t start, std::uint32_t count) {
  if (start > GetCharacterCount() || count > GetCharacterCount()) return;
  CutTo(start + std::min(count, GetCharacterCount() - start));
  RemoveFront(start);
}

CText CText::Left(std::uint32_t count) const { return View().substr(0, count); }

bool CText::IsQuoted() const {
  const std::string_view text = View();
  return text.size() >= 2 && (text.front() == '\'' || text.front() == '"') &&
         text.back() == text.front();
}

void CText::Unquote() {
  if (IsQuoted()) SubstringInPlace(1, GetCharacterCount() - 2);
}

void CText::WordWrap(std::uint32_t width) {
  constexpr std::uint64_t kTabColumns = 8;
  std::uint64_t column = 0;
  char* blank = nullptr;           // The last one on this line.
  std::uint64_t blank_column = 0;  // The column after it.
  char* const last = Buffer() + GetCharacterCount();
  for (char* next = Buffer(); next != last; ++next) {
    if (*next == '\n' || *next == '\r') {
      column = 0;
      blank = nullptr;
      continue;
    }
    column += *next == '\t' ? kTabColumns : 1;
    if (IsBlank(*next, TrimSet::kWhiteSpace)) {
      blank = next;
      blank_column = column;
    }
    if (column < width || blank == nullptr) continue;
    *blank = '\r';
    blank = nullptr;
    column -= blank_column;
  }
}

int CText::Compare(const CText& other) const {
  if (IsEmpty() || other.IsEmpty()) return int{other.IsEmpty()} - int{IsEmpty()};
  return CompareIgnoringCase(UntilNul(View()), UntilNul(other.View()));
}

/// Keeps the first `characters` characters.
void CText::CutTo(std::uint32_t characters) {
  if (characters == GetCharacterCount()) return;
  Buffer()[characters] = 0;
  SetLength(characters + 1);
}

void CText::RemoveFront(std::uint32_t characters) {
  if (characters != 0) CData::Splice(0, characters, nullptr, 0);
}

}  // namespace zaf
