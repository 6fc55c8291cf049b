#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "foundation/CObjectArray.h"
#include "foundation/CText.h"

namespace zaf {

/// An array of texts that it owns: they are deleted with it, and a copy has copies of them. Holds
/// no null pointers. Remove and RemoveAll transfer texts to the caller; DeleteAll deletes them.
class CTextPtrArray : public CObjectArray {
 public:
  CTextPtrArray() = default;
  CTextPtrArray(const CTextPtrArray& other);
  CTextPtrArray(CTextPtrArray&& other) noexcept = default;
  CTextPtrArray& operator=(const CTextPtrArray& other) {
    if (this != &other) Assign(other);
    return *this;
  }
  CTextPtrArray& operator=(CTextPtrArray&& other) noexcept;
  ~CTextPtrArray() override;

  /// Copies the texts of a CTextPtrArray or CTextArray; does nothing for any other argument. When
  /// memory is insufficient, the array is unchanged.
  void Assign(const CData& other) override;

  /// Deletes a text with its destructor.
  void DeleteElement(void* element) override;

  [[nodiscard]] CText* Get(std::uint32_t index) { return TextAt(index); }
  [[nodiscard]] const CText* Get(std::uint32_t index) const { return TextAt(index); }
  /// `index` is less than the count.
  [[nodiscard]] CText& operator[](std::uint32_t index) { return *TextAt(index); }
  [[nodiscard]] const CText& operator[](std::uint32_t index) const { return *TextAt(index); }

  /// Takes ownership of a text made with `new`. Returns its index; kNoIndex for null and when
  /// memory is insufficient: the text is then deleted.
  std::uint32_t Add(CText* text) { return Insert(GetCount(), text); }
  std::uint32_t Insert(std::uint32_t index, CText* text);
  std::uint32_t InsertFirst(CText* text) { return Insert(0, text); }

  /// Adds a new text and returns it; null when memory is insufficient.
  CText* Append(std::string_view characters);

  [[nodiscard]] TPointerIterator<CText> begin() { return TPointerIterator<CText>(Pointers()); }
  [[nodiscard]] TPointerIterator<CText> end() {
    return TPointerIterator<CText>(Pointers() + GetCount());
  }
  [[nodiscard]] TPointerIterator<const CText> begin() const {
    return TPointerIterator<const CText>(Pointers());
  }
  [[nodiscard]] TPointerIterator<const CText> end() const {
    return TPointerIterator<const CText>(Pointers() + GetCount());
  }

  /// Whether both have the same texts in the same order; case counts.
  friend bool operator==(const CTextPtrArray& a, const CTextPtrArray& b) { return a.IsSame(b); }

 private:
  [[nodiscard]] CText* TextAt(std::uint32_t index) const {
    return static_cast<CText*>(CObjectArray::Get(index));
  }
  [[nodiscard]] bool IsSame(const CTextPtrArray& other) const;
};

}  // namespace zaf
