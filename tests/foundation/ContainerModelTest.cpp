#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>

#include "foundation/CTextLocal.h"

namespace zaf {
namespace {

constexpr std::uint32_t kSeed = 20240229;

class TDice {
 public:
  std::uint32_t Below(std::size_t limit) { return static_cast<std::uint32_t>(engine_() % limit); }
  /// Few different characters, so that patterns repeat and overlap.
  std::string Text(std::size_t longest) {
    std::string text(Below(longest + 1), 'a');
    for (char& character : text) character = "aaaaaaAb \xC9"[Below(10)];
    return text;
  }

 private:
  std::mt19937 engine_{kSeed};
};

std::string Folded(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), ToUpper);
  return text;
}

/// The rule step by step: find, splice, continue after the replacement.
std::string Replaced(std::string text, const std::string& find, const std::string& replacement,
                     bool is_folded, std::uint32_t occurrence) {
  const std::string pattern = is_folded ? Folded(find) : find;
  std::uint32_t number = 0;
  for (std::size_t i = 0; !find.empty();) {
    i = (is_folded ? Folded(text) : text).find(pattern, i);
    if (i == std::string::npos) break;
    const bool is_chosen = ++number == occurrence || occurrence == 0;
    if (is_chosen) text.replace(i, find.size(), replacement);
    i += is_chosen ? replacement.size() : find.size();
  }
  return text;
}

std::uint32_t Place(std::size_t place) {
  return place == std::string::npos ? kNoIndex : static_cast<std::uint32_t>(place);
}

TEST(ContainerModel, ReplacingFollowsTheRule) {
  TDice dice;
  CText growing;
  CTextLocal<255> fixed;
  for (int step = 0; step < 10'000; ++step) {
    const std::string before = dice.Text(60);
    // Patterns come from the text itself half of the time, and are often longer than 16.
    const std::string find =
        dice.Below(2) == 0 ? dice.Text(4) : before.substr(dice.Below(before.size() + 1), 30);
    const std::string other = dice.Text(20);
    const bool is_folded = dice.Below(2) == 0;
    const std::uint32_t occurrence = dice.Below(4);
    const std::string after = Replaced(before, find, other, is_folded, occurrence);
    for (CText* const text : {&growing, static_cast<CText*>(&fixed)}) {
      if (after.size() > 254) continue;
      text->Assign(before);
      if (occurrence != 0)
        text->ReplaceOccurrence(CText(find), CText(other), occurrence,
                                is_folded ? CaseSensitivity::kIgnore : CaseSensitivity::kExact);
      else if (is_folded)
        text->ReplaceAllIgnoringCase(CText(find), CText(other));
      else
        text->ReplaceAll(CText(find), CText(other));
      ASSERT_EQ(text->View(), after) << before << ": " << find << " by " << other;
    }
  }
}

TEST(ContainerModel, PatternsAreFoundWhereTheyAre) {
  TDice dice;
  for (int step = 0; step < 10'000; ++step) {
    // Powers of a short word with a few faults: many periods and many near misses.
    const std::string word = dice.Text(6) + "a";
    std::string text;
    while (text.size() < 300) text += word;
    for (std::uint32_t faults = dice.Below(12); faults != 0; --faults)
      text[dice.Below(text.size())] = 'b';
    std::string pattern = text.substr(dice.Below(100), 17 + dice.Below(60));
    if (dice.Below(3) == 0) pattern[dice.Below(pattern.size())] = 'b';
    if (dice.Below(3) == 0) pattern.resize(dice.Below(17));
    const CText tried(text);
    const std::uint32_t start = dice.Below(300);
    ASSERT_EQ(tried.Find(pattern, start), Place(text.find(pattern, start))) << pattern;
    ASSERT_EQ(tried.Find(pattern, start, SearchDirection::kBackward),
              Place(text.substr(0, start).rfind(pattern)));
    ASSERT_EQ(tried.FindIgnoringCase(pattern), Place(Folded(text).find(Folded(pattern))));
  }
}

}  // namespace
}  // namespace zaf
