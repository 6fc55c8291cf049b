#include "actions/database/TTransOpenSpecification.h"

namespace zaf {
namespace {

constexpr TKeyword kIsolationKeywords[] = {
    {2, "Exclusive"},
    {1, "Uncommitted"},
};
constexpr TVocabulary kIsolations{kIsolationKeywords, TVocabulary::Fallback::kRefuse};
constexpr TKeywordCodec kIsolationCodec{kIsolations};

}  // namespace

std::span<const TProperty> TTransOpenSpecification::Properties() {
  using Open = TTransOpenSpecification;
  static constexpr TProperty kRows[] = {
      BasePart(),
      ChildIfSet<&Open::isolation_>(Code("ilvl"), "Isolation", kIsolationCodec),
      Carried<&Open::second_switch_>(Code("rber")),
  };
  return kRows;
}

}  // namespace zaf
