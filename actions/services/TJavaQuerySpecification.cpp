#include "actions/services/TJavaQuerySpecification.h"

namespace zaf {
namespace {

constexpr TKeyword kKindKeywords[] = {
    {0, "Class"},
    {static_cast<std::int32_t>(Code("bean")), "Bean"},
};
constexpr TVocabulary kKinds{kKindKeywords, TVocabulary::Fallback::kFirstKeyword};
constexpr TKeywordCodec kKindCodec{kKinds};

}  // namespace

std::span<const TProperty> TJavaQuerySpecification::Properties() {
  using Java = TJavaQuerySpecification;
  static constexpr TProperty kRows[] = {
      Attribute<&Java::kind_>(Code("type"), "Type", kKindCodec),
      Child<&Java::class_name_>(Code("name"), "Class"),
      Child<&Java::server_>(Code("host"), "JavaServer"),
      Child<&Java::port_>(Code("port"), "JavaServerPort"),
      List<&Java::arguments_>(Code("argu"), "ParameterList", "ParameterItem"),
  };
  return kRows;
}

}  // namespace zaf
