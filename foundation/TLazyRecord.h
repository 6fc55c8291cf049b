#pragma once

#include <cstring>
#include <memory>
#include <type_traits>

#include "foundation/Heap.h"

namespace zaf {

/// A record that is allocated only while it differs from a new one, `Record{}`: a large part that
/// most objects leave unchanged then costs them one pointer. Owns the record. A copy has its own
/// record; when memory for it is insufficient, the target is unchanged.
template <class Record>
class TLazyRecord {
  static_assert(std::is_trivially_copyable_v<Record>);
  static_assert(std::has_unique_object_representations_v<Record>, "records are compared as bytes");

 public:
  TLazyRecord() = default;
  // A copy cannot report a failure, but the heap has recorded it.
  TLazyRecord(const TLazyRecord& other) { static_cast<void>(Set(other.Get())); }
  TLazyRecord& operator=(const TLazyRecord& other) {
    if (this != &other) static_cast<void>(Set(other.Get()));
    return *this;
  }
  ~TLazyRecord() = default;

  /// The record, valid until the next Set.
  [[nodiscard]] const Record& Get() const { return stored_ == nullptr ? kNew : stored_->record; }

  /// Stores a copy of the record. False, with the old one unchanged, when memory is insufficient.
  [[nodiscard]] bool Set(const Record& record) {
    if (std::memcmp(&record, &kNew, sizeof record) == 0) {
      stored_.reset();
      return true;
    }
    if (stored_ != nullptr)
      stored_->record = record;
    else
      stored_ = heap::MakeUnique<TStored>(record);
    return stored_ != nullptr;
  }

 private:
  struct TStored {
    explicit TStored(const Record& initial) : record(initial) {}

    Record record;
  };

  static constexpr Record kNew{};

  std::unique_ptr<TStored> stored_;
};

}  // namespace zaf
