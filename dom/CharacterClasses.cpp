#include "dom/CharacterClasses.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace dom {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

constexpr Range kNameStart[] = {
    {':', ':'},       {'A', 'Z'},       {'_', '_'},       {'a', 'z'},
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
    {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
    {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};

/// Characters that a name may contain but not begin with.
constexpr Range kNameOnly[] = {
    {'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040},
};

template <std::size_t kCount>
bool IsIn(const Range (&ranges)[kCount], char32_t code) {
  const Range* const range = std::lower_bound(
      std::begin(ranges), std::end(ranges), code,
      [](const Range& candidate, char32_t value) { return candidate.last < value; });
  return range != std::end(ranges) && range->first <= code;
}

}  // namespace

bool IsNameStart(char32_t code) { return IsIn(kNameStart, code); }
bool IsNameCharacter(char32_t code) { return IsIn(kNameStart, code) || IsIn(kNameOnly, code); }

bool IsPublicIdCharacter(char c) {
  constexpr std::string_view kOthers = " \r\n-'()+,./:=?;!*#@$_%";
  return IsAsciiLetter(c) || IsAsciiDigit(c) || kOthers.find(c) != std::string_view::npos;
}

}  // namespace dom
