#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string_view>

#include "foundation/CText.h"
#include "foundation/TOwningArray.h"

namespace zaf {

/// An array of texts that it owns.
class CTextPtrArray : public TOwningArray<CText> {
 public:
  CTextPtrArray() = default;
  CTextPtrArray(const CTextPtrArray& other) : CTextPtrArray() { CTextPtrArray::Assign(other); }
  CTextPtrArray(CTextPtrArray&& other) noexcept = default;
  CTextPtrArray& operator=(const CTextPtrArray& other) = default;
  CTextPtrArray& operator=(CTextPtrArray&& other) noexcept = default;

  /// Copies the texts of a CTextPtrArray or CTextArray; does nothing for any other argument. When
  /// memory is insufficient, the array is unchanged.
  void Assign(const CData& other) override;

  /// Takes ownership of a text made with `new`. Returns its index; kNoIndex for null and when
  /// memory is insufficient: the text is then deleted.
  std::uint32_t Add(CText* text) { return Insert(GetCount(), text); }
  std::uint32_t Insert(std::uint32_t index, CText* text) {
    return TOwningArray::Insert(index, std::unique_ptr<CText>(text));
  }
  std::uint32_t InsertFirst(CText* text) { return Insert(0, text); }

  /// Adds a new text and returns it; null when memory is insufficient.
  CText* Append(std::string_view characters);

  /// Whether both have the same texts in the same order; case counts.
  friend bool operator==(const CTextPtrArray& a, const CTextPtrArray& b) {
    return std::ranges::equal(a, b, {}, &CText::View, &CText::View);
  }
};

}  // namespace zaf
