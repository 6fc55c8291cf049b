#include "actions/flow/TExpressionInfo.h"

#include "fields/ValueCodecs.h"

namespace zaf {
namespace {

constexpr std::size_t kOperatorSize = 4;

/// An operator. It is compared by its first four characters, and written with that many or whole.
class TOperatorCodec final : public TValueCodec {
 public:
  constexpr explicit TOperatorCodec(std::size_t written_size) : written_size_(written_size) {}

  bool IsEqual(const void* field, const void* other) const override {
    return Text(field).substr(0, kOperatorSize) == Text(other).substr(0, kOperatorSize);
  }

 protected:
  std::string_view Spell(const void* field, TScratch&) const override {
    return Text(field).substr(0, written_size_);
  }
  Status Parse(void* field, std::string_view text) const override {
    static_cast<TFixedText<128>*>(field)->Set(text);
    return Status::kOk;
  }
  bool IsSet(const void* field) const override { return !Text(field).empty(); }

 private:
  static std::string_view Text(const void* field) {
    return static_cast<const TFixedText<128>*>(field)->View();
  }

  std::size_t written_size_;
};

constexpr TOperatorCodec kCutOperatorCodec{kOperatorSize};
constexpr TOperatorCodec kWholeOperatorCodec{std::string_view::npos};

}  // namespace

std::span<const TProperty> TIfExpressionInfo::Properties() {
  using Info = TExpressionInfo;
  static constexpr TProperty kRows[] = {
      Child<&Info::left>(kNoCode, "ExpLeft"),
      Child<&Info::right>(kNoCode, "ExpRight"),
      ChildIfSet<&Info::conjunction>(kNoCode, "Conjunction"),
      Child<&Info::comparison>(kNoCode, "Operator", kCutOperatorCodec),
  };
  return kRows;
}

std::span<const TProperty> TWhileExpressionInfo::Properties() {
  using Info = TExpressionInfo;
  static constexpr TProperty kRows[] = {
      Attribute<&Info::conjunction>(kNoCode, "Conjunction"),
      Attribute<&Info::comparison>(kNoCode, "Operator", kWholeOperatorCodec),
      Child<&Info::left>(kNoCode, "ExpLeft"),
      Child<&Info::right>(kNoCode, "ExpRight"),
  };
  return kRows;
}

}  // namespace zaf
