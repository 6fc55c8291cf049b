#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "fields/AssignWithLineFeeds.h"
#include "fields/TextTraits.h"

namespace zaf {
namespace {

// Functions that examine a text 16 characters at a time must find a character at every place of
// texts of every size around one, two and three times 16.

constexpr std::size_t kLongest = 3 * dom::kBlock + 2;

TEST(TextEdges, LineFeedsAreAddedEverywhere) {
  for (std::size_t size = 0; size <= kLongest; ++size)
    for (std::size_t first = 0; first <= size; ++first)
      for (const std::size_t distance : {std::size_t{1}, std::size_t{2}, dom::kBlock}) {
        std::string characters(size, '.');
        for (std::size_t i = first; i < size; i += distance) characters[i] = '\r';
        std::string expected;
        for (const char c : characters) expected += c == '\r' ? "\r\n" : std::string(1, c);
        CText text("old");
        ASSERT_TRUE(AssignWithLineFeeds(characters, text));
        ASSERT_EQ(text.View(), expected) << size << ' ' << first << ' ' << distance;
      }
}

TEST(TextEdges, CharactersThatCountAreFoundEverywhere) {
  for (std::size_t size = 1; size <= kLongest; ++size)
    for (std::size_t place = 0; place < size; ++place)
      for (const char c : {'\0', '\x1F', '\r', '\n', '<', '\x7F', '\xFF', 'x'}) {
        std::string text(size, 'a');
        text[place] = c;
        const bool is_dropped = c == '\0' || c == '\x1F';
        const bool needs_cdata = c == '\r' || c == '<' || c == '\x7F' || c == '\xFF';
        const TTextTraits traits = ExamineText(text);
        ASSERT_EQ(traits.has_dropped, is_dropped) << size << ' ' << place << ' ' << int{c};
        ASSERT_EQ(traits.needs_cdata, needs_cdata) << size << ' ' << place << ' ' << int{c};
        // Adds a character that is dropped after one that needs CDATA.
        text[place] = '\x01';
        ASSERT_TRUE(ExamineText("<" + text).has_dropped) << size << ' ' << place;
        dom::ShortText copy;
        if (size > dom::kBlock) continue;
        text[place] = c;
        ASSERT_EQ(CopySimple(text, copy), !is_dropped && !needs_cdata) << size << ' ' << place;
        ASSERT_TRUE(std::equal(text.begin(), text.end(), copy.characters.begin()));
      }
}

}  // namespace
}  // namespace zaf
