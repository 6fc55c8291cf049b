#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "fields/TProperty.h"

namespace zaf {

/// One kind of a record: the number and the element that identify it, and its fields.
struct TChoice {
  std::int32_t kind;
  std::string_view element;
  std::span<const TProperty> rows = {};
  std::string_view read_element = {};  ///< The element that is read, if not `element`.
};

/// A record of one of several kinds, whose first 4 bytes are the number of its kind. Its element
/// contains one child, the kind's element, which contains the kind's fields. An unknown number, or
/// the absence of a known child, means the first kind. Fields of other kinds are not compared.
class TChoiceCodec final : public TFieldCodec {
 public:
  /// `numbers`: rows of all 32-bit numbers of the record, including its kind.
  constexpr TChoiceCodec(std::span<const TChoice> choices, std::span<const TProperty> numbers)
      : choices_(choices), numbers_(numbers) {}

  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override;
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override;
  bool IsEqual(const void* field, const void* other) const override;
  std::span<const TProperty> NestedNumbers() const override { return numbers_; }
  void NoteUse(const TProperty& row, const void* field, const TRecordUse& use) const override;
  void ReportWriting(const TProperty& row, const void* field,
                     const TXmlWriteScope& scope) const override;

  /// The first element of a known kind in `record_element`; null if not found.
  [[nodiscard]] dom::Element FindKindElement(dom::Element record_element) const;

 private:
  [[nodiscard]] const TChoice& ChoiceOf(const void* field) const;
  /// The choice that is read from an element of this name; null if not found.
  [[nodiscard]] const TChoice* FindChoice(std::string_view element) const;

  std::span<const TChoice> choices_;
  std::span<const TProperty> numbers_;
};

}  // namespace zaf
