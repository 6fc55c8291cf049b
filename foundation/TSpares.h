#pragma once

#include <array>
#include <cstddef>
#include <mutex>
#include <utility>

namespace zaf {

/// Objects that several threads use one after another, so that their memory is reused. Owns at most
/// 32; any others are destroyed.
template <class Object>
class TSpares {
 public:
  /// Returns an object that was kept, or a new one.
  Object Take() {
    const std::lock_guard lock(mutex_);
    return count_ > 0 ? std::move(objects_[--count_]) : Object();
  }
  void Keep(Object object) {
    const std::lock_guard lock(mutex_);
    if (count_ < objects_.size()) objects_[count_++] = std::move(object);
  }

 private:
  std::mutex mutex_;
  std::array<Object, 32> objects_;
  std::size_t count_ = 0;
};

}  // namespace zaf
