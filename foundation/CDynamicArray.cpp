#include "foundation/CDynamicArray.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <limits>
#include <utility>

namespace zaf {
namespace {

/// Elements by which an array grows.
constexpr std::uint32_t kStep = 4;

}  // namespace

CDynamicArray::CDynamicArray(std::uint32_t element_size)
    : element_size_(std::max(element_size, 1U)) {
  assert(element_size != 0);
}

CDynamicArray::CDynamicArray(CDynamicArray&& other) noexcept
    : CData(static_cast<CData&&>(other)),
      element_capacity_(std::exchange(other.element_capacity_, 0)),
      element_size_(other.element_size_) {}

CDynamicArray& CDynamicArray::operator=(CDynamicArray&& other) noexcept {
  if (this == &other) return *this;
  // A typed array keeps its element size: its own Assign decides.
  if (element_size_ != other.element_size_) return Assign(other), *this;
  CData::operator=(static_cast<CData&&>(other));
  element_capacity_ = std::exchange(other.element_capacity_, 0);
  element_size_ = other.element_size_;
  return *this;
}

TStoredData CDynamicArray::Set(const void* bytes, std::uint32_t count,
                               std::uint32_t capacity_hint) {
  const TStoredData stored = CData::Set(bytes, count, capacity_hint);
  element_capacity_ = GetCapacity() / element_size_;
  return stored;
}

void CDynamicArray::Assign(const CData& other) {
  CData::Assign(other);
  if (GetLength() != other.GetLength()) return;
  if (const auto* array = dynamic_cast<const CDynamicArray*>(&other); array != nullptr) {
    element_size_ = array->element_size_;
    element_capacity_ = array->element_capacity_;
  } else {
    element_capacity_ = GetCapacity() / element_size_;
  }
}

bool CDynamicArray::ReserveElements(std::uint32_t count) {
  if (count <= element_capacity_ && element_capacity_ - count < kStep) return true;
  std::uint64_t capacity = std::uint64_t{count / kStep} * kStep + kStep;
  if (count == 1 && element_capacity_ == 0) capacity = 1;
  if (capacity == element_capacity_) return false;
  constexpr std::uint64_t kGreatestSize = std::numeric_limits<std::uint32_t>::max();
  if (capacity > kGreatestSize / element_size_) return false;
  if (!Reserve(static_cast<std::uint32_t>(capacity * element_size_))) return false;
  element_capacity_ = static_cast<std::uint32_t>(capacity);
  SetLength(std::min(GetLength(), element_capacity_ * element_size_));
  return true;
}

void* CDynamicArray::ElementAt(std::uint32_t index) {
  return index < GetCount() ? Buffer() + std::size_t{index} * element_size_ : nullptr;
}

const void* CDynamicArray::ElementAt(std::uint32_t index) const {
  return index < GetCount() ? Buffer() + std::size_t{index} * element_size_ : nullptr;
}

std::uint32_t CDynamicArray::GetElement(std::uint32_t index, void* destination) const {
  const void* element = ElementAt(index);
  if (element == nullptr || destination == nullptr) return kNoIndex;
  std::memcpy(destination, element, element_size_);
  return index;
}

std::uint32_t CDynamicArray::SetElement(std::uint32_t index, const void* source) {
  void* element = ElementAt(index);
  if (element == nullptr || source == nullptr) return kNoIndex;
  std::memmove(element, source, element_size_);
  return index;
}

std::uint32_t CDynamicArray::Insert(std::uint32_t index, const void* source) {
  const std::uint32_t count = GetCount();
  const std::uint32_t position = std::min(index, count);
  if (count == kNoIndex) return kNoIndex;
  // Reserving may move the storage, so an element of this array is kept by its offset.
  const bool is_own = IsInStorage(source);
  const auto place = is_own ? static_cast<const char*>(source) - Buffer() : 0;
  if (count + 1 > element_capacity_ && !ReserveElements(count + 1)) return kNoIndex;
  const std::uint32_t length = count * element_size_;
  SetLength(length);  // Drops bytes after the last whole element.
  // The first element sets the buffer, which may shrink it; any other only needs the space.
  const std::uint32_t space = GetCapacity() - length;
  if (!is_own && position == count && element_size_ <= space &&
      (count != 0 || space - element_size_ < kSlack)) {
    StoreElement(position, source);
    SetLength(length + element_size_);
    return position;
  }
  const void* bytes = is_own ? Buffer() + place : source;
  const std::uint32_t new_length =
      length == 0 ? CData::Set(bytes, element_size_).length
                  : CData::Splice(position * element_size_, 0, bytes, element_size_);
  if (new_length != length + element_size_) return kNoIndex;
  if (source == nullptr) StoreElement(position, nullptr);
  return position;
}

void CDynamicArray::StoreElement(std::uint32_t index, const void* source) {
  char* const element = Buffer() + std::size_t{index} * element_size_;
  if (source == nullptr)
    std::memset(element, 0, element_size_);
  else
    std::memcpy(element, source, element_size_);
}

std::uint32_t CDynamicArray::Remove(std::uint32_t index) {
  if (index >= GetCount()) return kNoIndex;
  CData::Splice(index * element_size_, element_size_, nullptr, 0);
  return index;
}

std::uint32_t CDynamicArray::RemoveAll() {
  const std::uint32_t count = GetCount();
  Release();
  element_capacity_ = 0;
  return count;
}

}  // namespace zaf
