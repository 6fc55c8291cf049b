#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zaf::bench {

/// A repeatable random generator: the same seed gives the same numbers on every system.
class TRandom {
 public:
  explicit TRandom(std::uint64_t seed);

  /// A number from 0 to `bound` - 1.
  std::uint32_t Below(std::uint32_t bound);
  bool Chance(std::uint32_t percent) { return Below(100) < percent; }
  std::string_view Pick(std::span<const std::string_view> choices);

 private:
  std::uint64_t state_;
};

/// Makes the texts of one application, which has a subject, tables and columns, and one kind of
/// line end. Texts are ISO-8859-1; one word in about forty has a letter outside ASCII.
class TSampleText {
 public:
  explicit TSampleText(TRandom& random);

  std::string Words(std::uint32_t count);
  std::string Sentence(std::uint32_t size);  ///< Of about `size` bytes.
  std::string Html(std::uint32_t size);      ///< A page with markup, of about `size` bytes.
  std::string Expression();                  ///< With a tag and a comparison.
  std::string Value();                       ///< A tag, a number or a few words.
  std::string Number();
  std::string_view Title() const { return title_; }
  std::string_view Subject();
  std::string_view Table();
  std::string_view Column();

 private:
  void AppendPart(std::string& page);
  void AppendRows(std::string& page);

  TRandom& random_;
  std::string_view line_end_;
  std::string_view title_;
};

}  // namespace zaf::bench
