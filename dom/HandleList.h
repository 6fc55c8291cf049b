#pragma once

#include <cstddef>
#include <iterator>

namespace dom {

/// Iterates over the handles of one list of the tree, in order. Prefer a range-based loop:
/// getLength counts once, and item remembers its last place, so that indices in ascending order
/// take linear time in total. Nodes that are added or removed afterwards need a new list. `Handle`
/// provides its successor as `NextInList(handle)`.
template <class Handle>
class HandleList {
 public:
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Handle;
    using difference_type = std::ptrdiff_t;
    using pointer = const Handle*;
    using reference = Handle;

    Iterator() = default;
    explicit Iterator(Handle handle) : handle_(handle) {}
    Handle operator*() const { return handle_; }
    Iterator& operator++() {
      handle_ = NextInList(handle_);
      return *this;
    }
    Iterator operator++(int) {
      Iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(Iterator left, Iterator right) { return left.handle_ == right.handle_; }

   private:
    Handle handle_;
  };

  HandleList() = default;
  explicit HandleList(Handle first) : first_(first), last_found_(first) {}

  [[nodiscard]] Iterator begin() const { return Iterator(first_); }
  [[nodiscard]] Iterator end() const { return Iterator(); }

  [[nodiscard]] std::size_t getLength() {
    if (!is_counted_) length_ = static_cast<std::size_t>(std::distance(begin(), end()));
    is_counted_ = true;
    return length_;
  }
  /// The handle with this index, from 0; null beyond the end.
  [[nodiscard]] Handle item(std::size_t index) {
    if (index < last_index_) {
      last_index_ = 0;
      last_found_ = first_;
    }
    for (; last_index_ < index && last_found_; ++last_index_) last_found_ = NextInList(last_found_);
    return last_found_;
  }

 private:
  Handle first_;
  Handle last_found_;
  std::size_t last_index_ = 0;
  std::size_t length_ = 0;
  bool is_counted_ = false;
};

}  // namespace dom
