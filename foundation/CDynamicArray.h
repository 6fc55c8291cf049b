#pragma once

#include <cstdint>

#include "foundation/CData.h"

namespace zaf {

/// An array of elements of one size, held by value, one behind the other. Its bytes are what is
/// read from and written to files. Owns the bytes only: what an element refers to is its owner's
/// to release.
///
/// Elements are moved as bytes (memmove, realloc), so they must stand that: records of numbers and
/// fixed texts do, pointers do, a CText does (its characters are elsewhere), a CTextLocal does not.
///
/// The capacity in elements grows by 4, one alone excepted. The number of elements is the number of
/// whole ones in the bytes in use, so that it stays right when the bytes are changed as a buffer.
/// Adding one by one moves a linear number of bytes, see foundation/Heap.h; reserve ahead where the
/// count is known.
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
  ~CDynamicArray() override = default;

  /// As in CData. The capacity in elements becomes what the storage holds.
  TStoredData Set(const void* bytes, std::uint32_t count,
                  std::uint32_t capacity_hint = 0) override;

  /// Copies the bytes; from an array also its element size and its capacity in elements.
  void Assign(const CData& other) override;

  /// Brings the capacity to the multiple of 4 above `count` (to 1 for a first request of 1); an
  /// array shrinks when asked for at least 4 elements less than it holds. False when memory could
  /// not be had, and also, kept on purpose, when the new capacity would be the old one.
  virtual bool ReserveElements(std::uint32_t count);

  [[nodiscard]] std::uint32_t GetCount() const { return GetLength() / element_size_; }
  [[nodiscard]] bool IsEmpty() const { return GetCount() == 0; }
  [[nodiscard]] std::uint32_t GetElementCapacity() const { return element_capacity_; }
  [[nodiscard]] std::uint32_t GetElementSize() const { return element_size_; }

  /// The element inside the buffer, until the array changes; null when there is none.
  [[nodiscard]] void* ElementAt(std::uint32_t index);
  [[nodiscard]] const void* ElementAt(std::uint32_t index) const;

  /// Copies an element out; returns the index.
  std::uint32_t GetElement(std::uint32_t index, void* destination) const;

  /// Copies an element in; returns the index. kNoIndex for a null source, too.
  std::uint32_t SetElement(std::uint32_t index, const void* source);

  /// Inserts an element, which may be one of this array; an index beyond the count appends. A null
  /// source inserts zeros. Returns the position, or kNoIndex when memory could not be had.
  std::uint32_t Insert(std::uint32_t index, const void* source);
  std::uint32_t InsertFirst(const void* source) { return Insert(0, source); }
  std::uint32_t Add(const void* source) { return Insert(GetCount(), source); }

  /// Later elements move down, the storage stays. Returns the index.
  std::uint32_t Remove(std::uint32_t index);

  /// Frees the storage. Returns the old count.
  std::uint32_t RemoveAll();

 private:
  /// Puts a copy of the element, or zeros for null, in a place that has room.
  void StoreElement(std::uint32_t index, const void* source);

  std::uint32_t element_capacity_ = 0;
  std::uint32_t element_size_;
};

}  // namespace zaf
