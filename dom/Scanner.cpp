#include "dom/Scanner.h"

#include <algorithm>

namespace dom {
namespace {

struct Entity {
  std::string_view name;
  char character;
};

constexpr Entity kEntities[] = {
    {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''},
};

/// The value of the digit `c`; at least 16 when it is not a digit.
unsigned DigitOf(char c) {
  if (IsAsciiDigit(c)) return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
  return 16;
}

}  // namespace

const char* Scanner::FailAt(const char* place, ParseFault fault) {
  if (place == end_) return Fail(place, ParseFault::kUnfinished);
  const Character character = ReadCharacter(place, end_, encoding_);
  if (character.size == 0) return Fail(place, ParseFault::kIllFormed);
  return Fail(place, IsCharacter(character.code) ? fault : ParseFault::kCharacter);
}

const char* Scanner::FindText(const char* p, std::string_view text) const {
  const std::string_view rest(p, static_cast<std::size_t>(end_ - p));
  const std::size_t place = rest.find(text);
  return place == std::string_view::npos ? nullptr : p + place;
}

const char* Scanner::SkipOtherName(const char* p) {
  if (!IsHigh(Peek(p))) return p;
  const Character first = ReadCharacter(p, end_, encoding_);
  if (first.size == 0 || !IsNameStart(first.code)) return p;
  return SkipOtherName(p, IsNameCharacter);
}

const char* Scanner::SkipOtherName(const char* p, bool (*is_in_name)(char32_t)) {
  has_other_names_ = encoding_ != Encoding::kLatin1;
  while (p != end_) {
    const Character character = ReadCharacter(p, end_, encoding_);
    if (character.size == 0 || !is_in_name(character.code)) break;
    p += character.size;
  }
  return p;
}

bool Scanner::CheckCharacters(const char* p, const char* end) {
  while ((p = Find<Search::kControls>(p, end, high_)) != end) {
    const Character character = ReadCharacter(p, end, encoding_);
    if (character.size == 0) return Fail(p, ParseFault::kIllFormed) != nullptr;
    if (!IsCharacter(character.code)) return Fail(p, ParseFault::kCharacter) != nullptr;
    p += character.size;
  }
  return true;
}

TreeText Scanner::Decode(const char* p, const char* end, Part part) {
  char* const start = tree_.AllocateText(static_cast<std::size_t>(end - p));
  char* target = start;
  while (target != nullptr) {
    std::string_view rest = InPlace(p, end).View();
    target = CopyUpToSpecial(rest, part, target);
    if (rest.empty()) return InPlace(start, target);
    p = DecodeSpecial(rest.data(), part, target);
    if (p == nullptr) break;
  }
  return {};
}

char* Scanner::CopyUpToSpecial(std::string_view& text, Part part, char* target) const {
  switch (part) {
    case Part::kText:
      return CopyUpTo<Search::kTextEnd>(text, target, high_);
    case Part::kCData:
      return CopyUpTo<Search::kCDataEnd>(text, target, high_);
    case Part::kValue:
      break;
  }
  return CopyUpTo<Search::kValueEnd>(text, target, high_);
}

/// Decodes the character at which the search stopped.
const char* Scanner::DecodeSpecial(const char* p, Part part, char*& target) {
  const char c = *p;
  if (c == '&' && part != Part::kCData) return DecodeReference(p, target);
  if (c == '<' && part == Part::kValue) return Fail(p, ParseFault::kLessThan);
  if (c == ']' && part == Part::kText && StartsWith(p, "]]>"))
    return Fail(p, ParseFault::kCDataEnd);
  if (IsSpace(c)) {
    *target++ = part == Part::kValue ? ' ' : '\n';
    return p + (StartsWith(p, "\r\n") ? 2 : 1);
  }
  const Character character = ReadCharacter(p, end_, encoding_);
  if (character.size == 0) return Fail(p, ParseFault::kIllFormed);
  if (!IsCharacter(character.code)) return Fail(p, ParseFault::kCharacter);
  *target++ = ToLatin1(character.code);
  return p + character.size;
}

/// [67] Reference. If it is kept as written, only the `&` is consumed here.
const char* Scanner::DecodeReference(const char* p, char*& target) {
  const char* const name = p + 1;
  if (Peek(name) == '#') return DecodeNumber(p, target);
  const char* const end = SkipName(name);
  if (end == name || Peek(end) != ';') return Fail(p, ParseFault::kReference);
  for (const Entity& entity : kEntities) {
    if (!AreEqualNames(InPlace(name, end).View(), entity.name)) continue;
    *target++ = entity.character;
    return end + 1;
  }
  if (!keeps_references_) return Fail(p, ParseFault::kEntity);
  *target++ = '&';
  return name;
}

/// [66] CharRef.
const char* Scanner::DecodeNumber(const char* p, char*& target) {
  constexpr char32_t kTooLarge = 0x110000;
  const char* digit = p + 2;
  const unsigned base = Peek(digit) == 'x' ? 16 : 10;
  if (base == 16) ++digit;
  const char* const first_digit = digit;
  char32_t code = 0;
  for (unsigned value; (value = DigitOf(Peek(digit))) < base; ++digit)
    code = std::min<char32_t>(code * base + value, kTooLarge);
  if (digit == first_digit || Peek(digit) != ';') return Fail(p, ParseFault::kReference);
  if (!IsCharacter(code)) return Fail(p, ParseFault::kCharacterReference);
  *target++ = ToLatin1(code);
  return digit + 1;
}

char Scanner::ToLatin1(char32_t code) {
  if (code <= 0xFF) return static_cast<char>(code);
  ++replaced_count_;
  return '?';
}

TreeText Scanner::DecodeName(TreeText name) {
  char* const start = tree_.AllocateText(name.size);
  if (start == nullptr) return name;
  char* target = start;
  const char* const end = name.data + name.size;
  for (const char* p = name.data; p != end;) {
    const Character character = ReadCharacter(p, end, encoding_);
    p += character.size;
    *target++ = character.code <= 0xFF ? static_cast<char>(character.code) : '?';
  }
  return InPlace(start, target);
}

void Scanner::Locate(Encoding source, ParseReport& report) const {
  report.line = 1;
  report.column = 1;
  report.offset = 0;
  for (const char* p = begin_; p < fault_place_;) {
    const std::uint32_t size = std::max(ReadCharacter(p, end_, encoding_).size, 1U);
    const bool ends_line = *p == '\n' || (*p == '\r' && !StartsWith(p, "\r\n"));
    report.line += ends_line ? 1 : 0;
    report.column = ends_line ? 1 : report.column + 1;
    report.offset += source != Encoding::kUtf16 ? size : size == 4 ? 4 : 2;
    p += size;
  }
}

}  // namespace dom
