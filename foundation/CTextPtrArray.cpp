#include "foundation/CTextPtrArray.h"

#include <utility>

#include "foundation/CTextArray.h"

namespace zaf {

void CTextPtrArray::Assign(const CData& other) {
  const auto* source = dynamic_cast<const CObjectArray*>(&other);
  if (source == this || (dynamic_cast<const CTextPtrArray*>(source) == nullptr &&
                         dynamic_cast<const CTextArray*>(source) == nullptr))
    return;
  CTextPtrArray copy;
  for (std::uint32_t i = 0; i < source->GetCount(); ++i) {
    const auto* text = static_cast<const CText*>(source->Get(i));
    if (text != nullptr && copy.Append(text->View()) == nullptr) return;
  }
  *this = std::move(copy);
}

CText* CTextPtrArray::Append(std::string_view characters) {
  auto text = heap::MakeUnique<CText>(characters);
  if (text == nullptr || text->GetCharacterCount() != characters.size()) return nullptr;
  CText* const appended = text.release();
  return Add(appended) == kNoIndex ? nullptr : appended;
}

}  // namespace zaf
