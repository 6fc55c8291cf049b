#include "actions/flow/TExpressionInfo.h"

#include <cstring>

#include "fields/ValueCodecs.h"

namespace zaf {
namespace {

constexpr std::size_t kOperatorSize = 4;

/// An operator. It is compared by its first four bytes, including those after a NUL.
class TOperatorCodec final : public TValueCodec {
 public:
  bool IsEqual(const void* field, const void* other) const override {
    return std::memcmp(field, other, kOperatorSize) == 0;
  }
  void NoteUse(const TProperty& row, const void* field, const TRecordUse& use) const override {
    TCodecOf<TFixedText<128>>::kCodec.NoteUse(row, field, use);
  }

 protected:
  std::string_view Spell(const void* field, TScratch&) const override { return Text(field); }
  Status Parse(void* field, std::string_view text) const override {
    static_cast<TFixedText<128>*>(field)->Set(text);
    return Status::kOk;
  }
  bool IsSet(const void* field) const override { return !Text(field).empty(); }

 private:
  static std::string_view Text(const void* field) {
    return static_cast<const TFixedText<128>*>(field)->View();
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
