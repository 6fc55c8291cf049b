#pragma once

#include <cstdint>

#include "foundation/CObjectArray.h"
#include "foundation/CText.h"

namespace zaf {

/// An array of pointers to texts. Does not own them: their owner, which made them with `new`, calls
/// DeleteAll.
class CTextArray : public CObjectArray {
 public:
  /// Deletes a text with its destructor.
  void DeleteElement(void* element) override;

  [[nodiscard]] CText* Get(std::uint32_t index) const {
    return static_cast<CText*>(CObjectArray::Get(index));
  }

  std::uint32_t Add(CText* text) { return CObjectArray::Add(text); }
  std::uint32_t Insert(std::uint32_t index, CText* text) {
    return CObjectArray::Insert(index, text);
  }
  std::uint32_t InsertFirst(CText* text) { return CObjectArray::Insert(0, text); }
};

}  // namespace zaf
