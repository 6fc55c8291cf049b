#include "dom/RepeatedName.h"

#include <algorithm>

#include "dom/Tree.h"

namespace dom {
namespace {

/// Up to this number, all attributes are compared with each other.
constexpr std::size_t kFew = 8;

const TreeAttribute* CompareAll(const TreeElement& element) {
  for (const TreeAttribute* one = element.first_attribute; one != nullptr; one = one->next)
    for (const TreeAttribute* other = element.first_attribute; other != one; other = other->next)
      if (AreEqualNames(one->name.View(), other->name.View())) return one;
  return nullptr;
}

}  // namespace

const TreeAttribute* FindRepeatedName(const TreeElement& element, std::size_t count, Tree& tree) {
  if (count <= kFew) return CompareAll(element);
  void* const memory = tree.AllocateText(count * sizeof(void*));  // Aligned for pointers.
  if (memory == nullptr) return nullptr;
  auto** const sorted = static_cast<const TreeAttribute**>(memory);
  const TreeAttribute** end = sorted;
  for (const TreeAttribute* one = element.first_attribute; one != nullptr; one = one->next)
    *end++ = one;
  // The names are in the document, so that their addresses give their order there.
  std::sort(sorted, end, [](const TreeAttribute* one, const TreeAttribute* other) {
    const int order = one->name.View().compare(other->name.View());
    return order != 0 ? order < 0 : one->name.data < other->name.data;
  });
  const TreeAttribute* repeated = nullptr;
  for (const TreeAttribute** next = sorted + 1; next != end; ++next) {
    const bool is_first = repeated == nullptr || (*next)->name.data < repeated->name.data;
    if (is_first && AreEqualNames(next[-1]->name.View(), (*next)->name.View())) repeated = *next;
  }
  return repeated;
}

}  // namespace dom
