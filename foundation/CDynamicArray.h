#pragma once

#include <cstdint>

#include "foundation/CData.h"

namespace zaf {

/// An array of elements of one size, stored by value without gaps. Its bytes are what is read from
/// and written to files. Owns the bytes only; anything an element refers to belongs to the caller.
///
/// Elements are moved as bytes (memmove, realloc), so they must be trivially relocatable: records
/// of numbers and fixed texts, pointers and CText are, CTextLocal is not.
///
/// The capacity in elements grows in steps of 4, except that a first single element takes 1. The
/// count is the number of whole elements in the bytes in use, so it is right whichever operation
/// changed the bytes. Adding one by one moves a linear number of bytes, see foundation/Heap.h.
///
/// Indices and counts are in elements. kNoIndex reports failure; the array is then unchanged.
class CDynamicArray : public CData {
 public:
  /// `element_size` in bytes, greater than 0.
  explicit CDynamicArray(std::uint32_t element_size);
  CDynamicArray(const CDynamicArray& other) = default;
  CDynamicArray(CDynamicArray&& other) noexcept;
  CDynamicArray& operator=(const CDynamicArray& other) {
    if (this != &other) Assign(other);
    return *this;
  }
  CDynamicArray& operator=(CDynamicArray&& other) noexcept;

  /// As in CData. The capacity in elements becomes the number of whole elements in the storage.
  TStoredData Set(const void* bytes, std::uint32_t count, std::uint32_t capacity_hint = 0) override;

  /// Copies the bytes, and from an array also its element size and its capacity in elements.
  void Assign(const CData& other) override;

  /// Changes the capacity to the next multiple of 4 above `count` (to 1 for a first request of 1);
  /// an array shrinks when `count` is at least 4 elements less than its capacity. False when memory
  /// is insufficient and also, kept deliberately, when the new capacity would equal the old one.
  virtual bool ReserveElements(std::uint32_t count);

  [[nodiscard]] std::uint32_t GetCount() const { return GetLength() / element_size_; }
  [[nodiscard]] bool IsEmpty() const { return GetCount() == 0; }
  [[nodiscard]] std::uint32_t GetElementCapacity() const { return element_capacity_; }
  [[nodiscard]] std::uint32_t GetElementSize() const { return element_size_; }

  /// The element inside the buffer, valid until the array changes; null for an index out of range.
  [[nodiscard]] void* ElementAt(std::uint32_t index);
  [[nodiscard]] const void* ElementAt(std::uint32_t index) const;

  /// Copies an element out; returns the index.
  std::uint32_t GetElement(std::uint32_t index, void* destination) const;

  /// Copies an element in; returns the index. kNoIndex also for a null source.
  std::uint32_t SetElement(std::uint32_t index, const void* source);

  /// Inserts an element, which may be one of this array; an index beyond the count appends. A null
  /// source inserts zeros. Returns the position, or kNoIndex when memory is insufficient.
  std::uint32_t Insert(std::uint32_t index, const void* source);
  std::uint32_t InsertFirst(const void* source) { return Insert(0, source); }
  std::uint32_t Add(const void* source) { return Insert(GetCount(), source); }

  /// Removes an element; later ones move down and the capacity is unchanged. Returns the index.
  std::uint32_t Remove(std::uint32_t index);

  /// Frees the storage. Returns the old count.
  std::uint32_t RemoveAll();

 private:
  /// Copies the element, or zeros for null, to a position inside the storage.
  void StoreElement(std::uint32_t index, const void* source);

  std::uint32_t element_capacity_ = 0;
  std::uint32_t element_size_;
};

}  // namespace zaf
