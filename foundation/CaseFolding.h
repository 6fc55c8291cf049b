#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace zaf {

/// Whether letters that differ only in case are the same.
enum class CaseSensitivity { kIgnore, kExact };

namespace internal {

/// The letters from `first` on become those from `target` on.
constexpr std::array<char, 256> MakeCaseTable(unsigned char first, unsigned char target) {
  std::array<char, 256> table{};
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<char>(i);
  for (std::size_t i = 0; i < 26; ++i) table[first + i] = static_cast<char>(target + i);
  // Kept on purpose: in both directions the accented capital E folds to the plain small letter.
  table[0xC9] = 'e';
  return table;
}

inline constexpr std::array<char, 256> kUpperCase = MakeCaseTable('a', 'A');
inline constexpr std::array<char, 256> kLowerCase = MakeCaseTable('A', 'a');

}  // namespace internal

/// Upper and lower case of one character. Only the ASCII letters change, and 0xC9, which becomes
/// 'e' in both directions.
constexpr char ToUpper(char character) {
  return internal::kUpperCase[static_cast<unsigned char>(character)];
}
constexpr char ToLower(char character) {
  return internal::kLowerCase[static_cast<unsigned char>(character)];
}

/// Comparison of the texts as ToUpper maps them, so 0xC9 equals only itself.
bool EqualsIgnoringCase(std::string_view a, std::string_view b);

/// Less than, equal to or greater than 0, as `a` stands before, with or behind `b`; bytes count
/// as unsigned, and a text stands behind its own beginning.
int CompareIgnoringCase(std::string_view a, std::string_view b);

}  // namespace zaf
