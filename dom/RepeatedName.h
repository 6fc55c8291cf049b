#pragma once

#include <cstddef>

namespace dom {

struct TreeElement;
struct TreeAttribute;

/// Finds two attributes of an element that have one name, in time linear in the tag.
class RepeatedName {
 public:
  /// `count` is the number of attributes.
  RepeatedName(const TreeElement& element, std::size_t count);

  /// The later of the two; null when there are none.
  [[nodiscard]] const TreeAttribute* Get() const { return repeated_; }
  /// Whether memory ran out before the answer was known.
  [[nodiscard]] bool HasFailed() const { return has_failed_; }

 private:
  void CompareAll(const TreeElement& element);
  void LookUpAll(const TreeElement& element, std::size_t count);

  const TreeAttribute* repeated_ = nullptr;
  bool has_failed_ = false;
};

}  // namespace dom
