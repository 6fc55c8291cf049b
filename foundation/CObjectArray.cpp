#include "foundation/CObjectArray.h"

#include "foundation/Heap.h"

namespace zaf {

void CObjectArray::Assign(const CData& other) {
  if (dynamic_cast<const CObjectArray*>(&other) != nullptr) CDynamicArray::Assign(other);
}

void CObjectArray::DeleteElement(void* element) { heap::Free(element); }

std::uint32_t CObjectArray::DeleteAll() {
  const std::uint32_t count = GetCount();
  for (std::uint32_t i = 0; i < count; ++i)
    if (void* element = Pointers()[i]; element != nullptr) DeleteElement(element);
  RemoveAll();
  return count;
}

}  // namespace zaf
