#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "foundation/CDynamicArray.h"

namespace zaf {

/// A CDynamicArray of `Record`s. Owns them; copies and moves as a whole. Pointers to records and
/// iterators are valid until the array changes.
template <class Record>
class TRecordArray : public CDynamicArray {
  static_assert(std::is_trivially_copyable_v<Record>, "records are moved and compared as bytes");
  static_assert(std::is_standard_layout_v<Record>, "records are laid out as in a file");
  static_assert(alignof(Record) <= alignof(std::max_align_t));

 public:
  TRecordArray() : CDynamicArray(sizeof(Record)) {}

  /// Copies an array of elements of the same size; does nothing for any other argument.
  void Assign(const CData& other) override {
    const auto* array = dynamic_cast<const CDynamicArray*>(&other);
    if (array != nullptr && array->GetElementSize() == sizeof(Record)) CDynamicArray::Assign(other);
  }

  [[nodiscard]] std::uint32_t GetCount() const {
    return GetLength() / static_cast<std::uint32_t>(sizeof(Record));
  }

  [[nodiscard]] Record* begin() { return static_cast<Record*>(static_cast<void*>(GetData())); }
  [[nodiscard]] Record* end() { return begin() + GetCount(); }
  [[nodiscard]] const Record* begin() const {
    return static_cast<const Record*>(static_cast<const void*>(CData::GetData()));
  }
  [[nodiscard]] const Record* end() const { return begin() + GetCount(); }

  /// `index` is less than the count.
  [[nodiscard]] Record& operator[](std::uint32_t index) {
    assert(index < GetCount());
    return begin()[index];
  }
  [[nodiscard]] const Record& operator[](std::uint32_t index) const {
    assert(index < GetCount());
    return begin()[index];
  }

  /// Adds a copy of the record, which may be one of this array. Returns its index, or kNoIndex when
  /// memory is insufficient.
  std::uint32_t Add(const Record& record) { return CDynamicArray::Add(&record); }

  /// Adds a record of zeros and returns it; null when memory is insufficient.
  [[nodiscard]] Record* Append() {
    const std::uint32_t index = CDynamicArray::Add(nullptr);
    return index == kNoIndex ? nullptr : begin() + index;
  }

  /// Whether all bytes are equal.
  friend bool operator==(const TRecordArray& a, const TRecordArray& b) { return a.EqualsData(b); }
};

}  // namespace zaf
