#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace zaf {

/// Names without NULs, close together: one takes its characters, a NUL and a pointer. Their
/// characters stay in place, also when the list is moved. Throws std::bad_alloc when there is no
/// memory for a name.
class TNameList {
 public:
  TNameList() = default;
  TNameList(TNameList&& other) noexcept { Swap(other); }
  TNameList& operator=(TNameList&& other) noexcept {
    Swap(other);
    return *this;
  }
  ~TNameList() = default;

  void Append(std::string_view name);

  /// Brings the names from the one with number `first` on into ascending byte order.
  void SortFrom(std::size_t first);

  [[nodiscard]] std::size_t GetCount() const { return names_.size(); }
  [[nodiscard]] std::string_view operator[](std::size_t number) const { return names_[number]; }

 private:
  void Swap(TNameList& other) noexcept {
    std::swap(names_, other.names_);
    std::swap(blocks_, other.blocks_);
    std::swap(next_, other.next_);
    std::swap(room_, other.room_);
  }

  std::vector<const char*> names_;
  std::vector<std::unique_ptr<char[]>> blocks_;
  char* next_ = nullptr;  ///< The room that is left in the last block.
  std::size_t room_ = 0;
};

}  // namespace zaf
