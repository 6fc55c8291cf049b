#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zaf {

/// A list of names without NULs that takes little memory: a name takes its characters, a NUL and
/// four bytes. Throws std::bad_alloc when memory is insufficient or the names exceed 4 GiB.
class TNameList {
 public:
  void Append(std::string_view name);

  /// Sorts the names from index `first` on in ascending byte order.
  void SortFrom(std::size_t first);

  [[nodiscard]] std::size_t GetCount() const { return offsets_.size(); }
  /// Valid until the list changes.
  [[nodiscard]] std::string_view operator[](std::size_t index) const {
    return characters_.data() + offsets_[index];
  }

 private:
  std::string characters_;  ///< Of all names, each with its NUL.
  std::vector<std::uint32_t> offsets_;
};

}  // namespace zaf
