#include "dom/References.h"

#include <cstring>
#include <string_view>

namespace dom {
namespace {

struct Entity {
  std::string_view reference;
  char character;
};

constexpr Entity kEntities[] = {
    {"&lt;",   '<' },
    {"&gt;",   '>' },
    {"&amp;",  '&' },
    {"&quot;", '"' },
    {"&apos;", '\''},
};

/// The digit that `c` is, at least 16 when it is none.
unsigned DigitOf(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
  return 16;
}

/// Takes the numeric reference that `source` points at, and writes its character. False when it is
/// no such reference; then nothing is taken.
bool TakeNumber(const char*& source, char*& target) {
  const char* p = source + 2;
  const unsigned base = *p == 'x' ? 16 : 10;
  if (base == 16) ++p;
  const char* const digits = p;
  unsigned number = 0;
  for (unsigned digit; (digit = DigitOf(*p)) < base; ++p)
    if (number <= 0xFF) number = number * base + digit;
  if (p == digits || *p != ';') return false;
  source = p + 1;
  *target++ = number <= 0xFF ? static_cast<char>(number) : '?';
  return true;
}

/// Takes what `source` points at, a reference or just a '&'.
void TakeReference(const char*& source, char*& target) {
  if (source[1] == '#') {
    if (TakeNumber(source, target)) return;
  } else {
    for (const Entity& entity : kEntities) {
      if (std::strncmp(source, entity.reference.data(), entity.reference.size()) != 0) continue;
      source += entity.reference.size();
      *target++ = entity.character;
      return;
    }
  }
  *target++ = *source++;
}

}  // namespace

std::uint32_t ExpandReferences(char* text, std::uint32_t size) {
  char* target = static_cast<char*>(std::memchr(text, '&', size));
  if (target == nullptr) return size;
  const char* source = target;
  const char* const end = text + size;
  while (source != end) {
    TakeReference(source, target);
    const void* const next = std::memchr(source, '&', static_cast<std::size_t>(end - source));
    const char* const stop = next == nullptr ? end : static_cast<const char*>(next);
    const auto count = static_cast<std::size_t>(stop - source);
    std::memmove(target, source, count);
    target += count;
    source = stop;
  }
  return static_cast<std::uint32_t>(target - text);
}

}  // namespace dom
