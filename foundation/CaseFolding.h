#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace zaf {

/// Whether letters that differ only in case are equal.
enum class CaseSensitivity { kIgnore, kExact };

namespace internal {

/// Maps the 26 letters from `first` on to those from `target` on.
constexpr std::array<char, 256> MakeCaseTable(unsigned char first, unsigned char target) {
  std::array<char, 256> table{};
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<char>(i);
  for (std::size_t i = 0; i < 26; ++i) table[first + i] = static_cast<char>(target + i);
  // Kept deliberately: the accented capital E becomes a plain lower-case e in both directions.
  table[0xC9] = 'e';
  return table;
}

inline constexpr std::array<char, 256> kUpperCase = MakeCaseTable('a', 'A');
inline constexpr std::array<char, 256> kLowerCase = MakeCaseTable('A', 'a');

}  // namespace internal

/// Convert one character to upper or lower case. Only the ASCII letters change, and 0xC9, which
/// becomes 'e' in both directions.
constexpr char ToUpper(char character) {
  return internal::kUpperCase[static_cast<unsigned char>(character)];
}
constexpr char ToLower(char character) {
  return internal::kLowerCase[static_cast<unsigned char>(character)];
}

/// Compares texts as mapped by ToUpper, so 0xC9 equals only itself.
bool EqualsIgnoringCase(std::string_view a, std::string_view b);

/// Returns a number less than, equal to or greater than 0 when `a` is ordered before, equal to or
/// after `b`. Bytes count as unsigned; a prefix of a text is ordered before it.
int CompareIgnoringCase(std::string_view a, std::string_view b);

}  // namespace zaf
