#include "actions/builders/TDisplayOptions.h"

#include "fields/ValueCodecs.h"

namespace zaf {
namespace {

constexpr TKeyword kFormatKeywords[] = {
    {0, "None"},
    {1, "Date"},
    {2, "Time"},
    {3, "Timestamp"},
    {4, "Number"},
    {5, "Decimals"},
    {6, "NumberWithCommas"},
    {7, "Currency"},
    {8, "CurrencyWithCommas"},
};
constexpr TVocabulary kFormats{kFormatKeywords, TVocabulary::Fallback::kFirstKeyword};
constexpr TKeywordCodec kFormatCodec{kFormats};

template <class Display>
struct TTables {
  static constexpr TProperty kNormalRows[] = {
      AttributeIfSet<&Display::line_breaks>(kNoCode, "LineBreaks", kNumberSwitchCodec),
      Attribute<&Display::format>(kNoCode, "Format", kFormatCodec),
  };
  static constexpr TProperty kImageFileRows[] = {
      Attribute<&Display::path>(kNoCode, "Path"),
  };
  static constexpr TProperty kNumberRows[] = {
      Carried<&Display::kind>(kNoCode),
      Carried<&Display::format>(kNoCode),
      Carried<&Display::line_breaks>(kNoCode),
  };
  static constexpr TChoice kKinds[] = {
      {0, "DisplayNormal", kNormalRows},
      {1, "DisplayDetailLink"},
      {2, "DisplayURL"},
      {3, "DisplayEmail"},
      {4, "DisplayImageFile", kImageFileRows},
      {5, "DisplayImageURL"},
      {6, "DisplayHTML"},
  };
  static constexpr TChoiceCodec kCodec{kKinds, kNumberRows};
};

}  // namespace

constexpr TChoiceCodec kListDisplayCodec = TTables<TListDisplayOptions>::kCodec;
constexpr TChoiceCodec kDetailDisplayCodec = TTables<TDetailDisplayOptions>::kCodec;

}  // namespace zaf
