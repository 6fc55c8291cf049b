#include "actions/flow/TExpressionInfo.h"

#include <cstring>

#include "fields/ValueCodecs.h"

namespace zaf {
namespace {

constexpr std::size_t kOperatorSize = 4;

/// An operator. It is compared by its first four bytes, including those after a NUL.
class TOperatorCodec final : public TFixedTextCodecBase<128> {
 public:
  bool IsEqual(const void* field, const void* other) const override {
    return std::memcmp(field, other, kOperatorSize) == 0;
  }
};

constexpr TOperatorCodec kOperatorCodec;

}  // namespace

bool TExpressionInfo::CutOperator() {
  const bool is_longer = comparison.View().size() > kOperatorSize;
  comparison.Set(comparison.View().substr(0, kOperatorSize));
  return is_longer;
}

std::span<const TProperty> TIfExpressionInfo::Properties() {
  using Info = TExpressionInfo;
  static constexpr TProperty kRows[] = {
      Child<&Info::left>(kNoCode, "ExpLeft"),
      Child<&Info::right>(kNoCode, "ExpRight"),
      ChildIfSet<&Info::conjunction>(kNoCode, "Conjunction"),
      Child<&Info::comparison>(kNoCode, "Operator", kOperatorCodec),
  };
  return kRows;
}

std::span<const TProperty> TWhileExpressionInfo::Properties() {
  using Info = TExpressionInfo;
  static constexpr TProperty kRows[] = {
      Attribute<&Info::conjunction>(kNoCode, "Conjunction"),
      Attribute<&Info::comparison>(kNoCode, "Operator", kOperatorCodec),
      Child<&Info::left>(kNoCode, "ExpLeft"),
      Child<&Info::right>(kNoCode, "ExpRight"),
  };
  return kRows;
}

}  // namespace zaf
