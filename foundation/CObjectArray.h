#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>

#include "foundation/CDynamicArray.h"

namespace zaf {

/// An array of pointers to objects. Does not own them: an owner calls DeleteAll before the array is
/// destroyed.
class CObjectArray : public CDynamicArray {
 public:
  CObjectArray() : CDynamicArray(sizeof(void*)) {}

  /// Copies the pointers of an array of pointers; does nothing for any other argument.
  void Assign(const CData& other) override;

  /// Deletes one object. This class frees its memory (from foundation/Heap.h) without calling a
  /// destructor; derived classes delete an object of their type.
  virtual void DeleteElement(void* element);

  [[nodiscard]] std::uint32_t GetCount() const {
    return GetLength() / static_cast<std::uint32_t>(sizeof(void*));
  }

  /// The pointer, or null when the index is out of range.
  [[nodiscard]] void* Get(std::uint32_t index) const {
    return index < GetCount() ? Pointers()[index] : nullptr;
  }

  std::uint32_t Add(void* element) { return CDynamicArray::Add(&element); }
  std::uint32_t Insert(std::uint32_t index, void* element) {
    return CDynamicArray::Insert(index, &element);
  }
  std::uint32_t InsertFirst(void* element) { return Insert(0, element); }

  /// Deletes every object that is not null, then removes all pointers. Returns the old count.
  std::uint32_t DeleteAll();

 protected:
  [[nodiscard]] void* const* Pointers() const {
    return static_cast<void* const*>(static_cast<const void*>(CData::GetData()));
  }
};

/// Iterates over the objects of an array of pointers (`Object` may be const). None may be null.
template <class Object>
class TPointerIterator {
 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = std::remove_const_t<Object>;
  using difference_type = std::ptrdiff_t;
  using pointer = Object*;
  using reference = Object&;

  TPointerIterator() = default;
  explicit TPointerIterator(void* const* position) : position_(position) {}

  Object& operator*() const { return *static_cast<Object*>(*position_); }
  Object* operator->() const { return static_cast<Object*>(*position_); }
  TPointerIterator& operator++() {
    ++position_;
    return *this;
  }
  TPointerIterator operator++(int) {
    TPointerIterator old = *this;
    ++position_;
    return old;
  }
  friend bool operator==(TPointerIterator a, TPointerIterator b) {
    return a.position_ == b.position_;
  }

 private:
  void* const* position_ = nullptr;
};

}  // namespace zaf
