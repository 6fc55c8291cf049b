#include "dom/RepeatedName.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string_view>

#include "dom/Heap.h"
#include "dom/Tree.h"

namespace dom {
namespace {

/// Up to this many attributes are compared each with each.
constexpr std::size_t kFew = 8;

/// A hash (FNV-1a, then mixed) that begins with where the tree is in memory, which no document
/// knows: none can be made whose names have one hash.
std::uint64_t HashOf(std::string_view name, const void* seed) {
  std::uint64_t hash = 0xCBF29CE484222325 ^ reinterpret_cast<std::uintptr_t>(seed) >> 4;
  for (const char c : name) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 0x100000001B3;
    hash ^= hash >> 29;
  }
  return hash * 0x9E3779B97F4A7C15;
}

}  // namespace

RepeatedName::RepeatedName(const TreeElement& element, std::size_t count) {
  if (count <= kFew)
    CompareAll(element);
  else
    LookUpAll(element, count);
}

void RepeatedName::CompareAll(const TreeElement& element) {
  for (const TreeAttribute* one = element.first_attribute; one != nullptr; one = one->next)
    for (const TreeAttribute* other = one->next; other != nullptr; other = other->next)
      if (AreEqualNames(one->name.View(), other->name.View())) repeated_ = other;
}

void RepeatedName::LookUpAll(const TreeElement& element, std::size_t count) {
  const std::size_t size = std::bit_ceil(2 * count);
  const int shift = 64 - std::countr_zero(size);
  auto** const table = static_cast<const TreeAttribute**>(Allocate(size * sizeof(void*)));
  has_failed_ = table == nullptr;
  if (has_failed_) return;
  std::fill_n(table, size, nullptr);
  const TreeAttribute* attribute = element.first_attribute;
  for (; attribute != nullptr && repeated_ == nullptr; attribute = attribute->next) {
    const std::string_view name = attribute->name.View();
    std::size_t place = HashOf(name, &element) >> shift;
    for (; table[place] != nullptr; place = (place + 1) % size)
      if (AreEqualNames(table[place]->name.View(), name)) repeated_ = attribute;
    table[place] = attribute;
  }
  Free(table);
}

}  // namespace dom
