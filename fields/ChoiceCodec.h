#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "fields/TProperty.h"

namespace zaf {

/// One kind of thing that a record can be: its number, its element and the fields that it has.
struct TChoice {
  std::int32_t kind;
  std::string_view element;
  std::span<const TProperty> rows = {};
  std::string_view read_element = {};  ///< Where it is not `element`: the one that is read.
};

/// A record that is one of several kinds of things and that begins with the number of its kind, in
/// 4 bytes. Its element holds one element, that of the kind, and that one the kind's fields. A
/// number without a choice, and an element without the element of any, is the first choice. Fields
/// of other kinds do not count.
class TChoiceCodec final : public TFieldCodec {
 public:
  /// `numbers`: rows of all numbers of the record, the kind included.
  constexpr TChoiceCodec(std::span<const TChoice> choices, std::span<const TProperty> numbers)
      : choices_(choices), numbers_(numbers) {}

  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override;
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override;
  bool IsEqual(const void* field, const void* other) const override;
  std::span<const TProperty> NestedWords() const override { return numbers_; }

  /// The first element of a known kind in `record_element`; null when there is none.
  [[nodiscard]] dom::Element FindKindElement(dom::Element record_element) const;

 private:
  [[nodiscard]] const TChoice& ChoiceOf(const void* field) const;
  /// The choice that is read from an element of this name; null when there is none.
  [[nodiscard]] const TChoice* FindChoice(std::string_view element) const;

  std::span<const TChoice> choices_;
  std::span<const TProperty> numbers_;
};

}  // namespace zaf
