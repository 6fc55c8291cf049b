#include "foundation/CTextPtrArray.h"

#include <algorithm>
#include <new>
#include <utility>

#include "foundation/CTextArray.h"

namespace zaf {

CTextPtrArray::CTextPtrArray(const CTextPtrArray& other) : CTextPtrArray() {
  CTextPtrArray::Assign(other);
}

CTextPtrArray& CTextPtrArray::operator=(CTextPtrArray&& other) noexcept {
  if (this == &other) return *this;
  DeleteAll();
  CObjectArray::operator=(std::move(other));
  return *this;
}

CTextPtrArray::~CTextPtrArray() { DeleteAll(); }

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

void CTextPtrArray::DeleteElement(void* element) { delete static_cast<CText*>(element); }

std::uint32_t CTextPtrArray::Insert(std::uint32_t index, CText* text) {
  if (text == nullptr) return kNoIndex;
  const std::uint32_t position = CObjectArray::Insert(index, text);
  if (position == kNoIndex) DeleteElement(text);
  return position;
}

CText* CTextPtrArray::Append(std::string_view characters) {
  auto text = heap::MakeUnique<CText>(characters);
  if (text == nullptr || text->GetCharacterCount() != characters.size()) return nullptr;
  CText* const appended = text.release();
  return Add(appended) == kNoIndex ? nullptr : appended;
}

bool CTextPtrArray::IsSame(const CTextPtrArray& other) const {
  return std::equal(begin(), end(), other.begin(), other.end(),
                    [](const CText& a, const CText& b) { return a.View() == b.View(); });
}

}  // namespace zaf
