#pragma once

#include <cstring>
#include <memory>
#include <type_traits>

#include "foundation/Heap.h"

namespace zaf {

/// A record that is stored only while it differs from a new one, `Record{}`: for a large part that
/// most objects leave as it is, and that then takes them no more than a pointer. Owns the record. A
/// copy has a record of its own; where there is no memory for that, the target stays as it was.
template <class Record>
class TLazyRecord {
  static_assert(std::is_trivially_copyable_v<Record>);
  static_assert(std::has_unique_object_representations_v<Record>, "records are compared as bytes");

 public:
  TLazyRecord() = default;
  // The heap has counted a failure, and a copy cannot report it otherwise.
  TLazyRecord(const TLazyRecord& other) { static_cast<void>(Set(other.Get())); }
  TLazyRecord& operator=(const TLazyRecord& other) {
    if (this != &other) static_cast<void>(Set(other.Get()));
    return *this;
  }
  ~TLazyRecord() = default;

  /// The record, until the next Set.
  [[nodiscard]] const Record& Get() const { return stored_ == nullptr ? kNew : stored_->record; }

  /// Holds a copy of the record. False when memory runs out: the old one is then unchanged.
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
