#pragma once

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "foundation/CObjectArray.h"

namespace zaf {

/// An array that owns objects of one class `T`: deletes them with their destructor and copies them
/// with their copy constructor, so `T` is the class of each object, not a base. The address of an
/// object does not change while the array grows. Holds no null pointers. Remove and RemoveAll
/// transfer the objects to the caller; DeleteAll deletes them.
template <class T>
class TOwningArray : public CObjectArray {
 public:
  TOwningArray() = default;
  TOwningArray(const TOwningArray& other) : TOwningArray() { CopyFrom(other); }
  TOwningArray(TOwningArray&& other) noexcept = default;
  TOwningArray& operator=(const TOwningArray& other) {
    if (this != &other) Assign(other);
    return *this;
  }
  TOwningArray& operator=(TOwningArray&& other) noexcept {
    if (this != &other) {
      DeleteAll();
      CObjectArray::operator=(std::move(other));
    }
    return *this;
  }
  ~TOwningArray() override { TOwningArray::DeleteAllHere(); }

  /// Copies the objects of an array of the same class; does nothing for any other argument. When
  /// memory is insufficient, the array is unchanged.
  void Assign(const CData& other) override {
    const auto* source = dynamic_cast<const TOwningArray*>(&other);
    if (source == nullptr || source == this) return;
    TOwningArray copy;
    if (copy.CopyFrom(*source)) *this = std::move(copy);
  }

  /// Deletes an object of class `T`.
  void DeleteElement(void* element) override { delete static_cast<T*>(element); }

  [[nodiscard]] T* Get(std::uint32_t index) { return static_cast<T*>(CObjectArray::Get(index)); }
  [[nodiscard]] const T* Get(std::uint32_t index) const {
    return static_cast<const T*>(CObjectArray::Get(index));
  }
  /// `index` is less than the count.
  [[nodiscard]] T& operator[](std::uint32_t index) {
    assert(index < GetCount());
    return *static_cast<T*>(Pointers()[index]);
  }
  [[nodiscard]] const T& operator[](std::uint32_t index) const {
    assert(index < GetCount());
    return *static_cast<const T*>(Pointers()[index]);
  }

  /// Takes ownership of the object. Returns its index; kNoIndex for null and when memory is
  /// insufficient: the object is then deleted.
  std::uint32_t Add(std::unique_ptr<T> object) { return Insert(GetCount(), std::move(object)); }
  std::uint32_t Insert(std::uint32_t index, std::unique_ptr<T> object) {
    if (object == nullptr) return kNoIndex;
    const std::uint32_t position = CObjectArray::Insert(index, object.get());
    if (position != kNoIndex) static_cast<void>(object.release());
    return position;
  }

  /// Adds an object constructed from the arguments and returns it; null when memory is
  /// insufficient.
  template <class... Arguments>
  T* Append(Arguments&&... arguments) {
    auto object = heap::MakeUnique<T>(std::forward<Arguments>(arguments)...);
    T* const added = object.get();
    return Add(std::move(object)) == kNoIndex ? nullptr : added;
  }

  [[nodiscard]] TPointerIterator<T> begin() { return TPointerIterator<T>(Pointers()); }
  [[nodiscard]] TPointerIterator<T> end() { return TPointerIterator<T>(Pointers() + GetCount()); }
  [[nodiscard]] TPointerIterator<const T> begin() const {
    return TPointerIterator<const T>(Pointers());
  }
  [[nodiscard]] TPointerIterator<const T> end() const {
    return TPointerIterator<const T>(Pointers() + GetCount());
  }

  /// Equal objects in the same order.
  friend bool operator==(const TOwningArray& a, const TOwningArray& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
  }

 private:
  bool CopyFrom(const TOwningArray& other) {
    if constexpr (std::is_copy_constructible_v<T>) {
      for (const T& object : other)
        if (Add(heap::MakeUnique<T>(object)) == kNoIndex) return false;
      return true;
    } else {
      assert(false && "objects of this class cannot be copied");
      return false;
    }
  }
  void DeleteAllHere() {
    for (T& object : *this) delete &object;
  }
};

}  // namespace zaf
