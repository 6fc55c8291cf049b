#include "dom/RepeatedName.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string_view>

#include "dom/Heap.h"
#include "dom/Tree.h"

namespace dom {
namespace {

/// Up to this number, attributes are compared with each other directly.
constexpr std::size_t kFew = 8;

/// A hash (FNV-1a, mixed) seeded with the address of the table, which an input cannot predict, so
/// that no document can be made whose names all collide.
std::uint64_t HashOf(std::string_view name, const void* seed) {
  std::uint64_t hash = 0xCBF29CE484222325 ^ reinterpret_cast<std::uintptr_t>(seed) >> 4;
  for (const char c : name) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 0x100000001B3;
    hash ^= hash >> 29;
  }
  return hash * 0x9E3779B97F4A7C15;
}

const TreeAttribute* CompareAll(const TreeElement& element) {
  for (const TreeAttribute* one = element.first_attribute; one != nullptr; one = one->next)
    for (const TreeAttribute* other = one->next; other != nullptr; other = other->next)
      if (AreEqualNames(one->name.View(), other->name.View())) return other;
  return nullptr;
}

/// Adds the attribute to the table, whose size is a power of two. False when its name is there
/// already.
bool IsNew(const TreeAttribute& attribute, const TreeAttribute** table, std::size_t size) {
  const std::string_view name = attribute.name.View();
  auto place = static_cast<std::size_t>(HashOf(name, table) >> (64 - std::countr_zero(size)));
  for (; table[place] != nullptr; place = (place + 1) % size)
    if (AreEqualNames(table[place]->name.View(), name)) return false;
  table[place] = &attribute;
  return true;
}

}  // namespace

const TreeAttribute* FindRepeatedName(const TreeElement& element, std::size_t count, Tree& tree) {
  if (count <= kFew) return CompareAll(element);
  const std::size_t size = std::bit_ceil(2 * count);
  auto** const table = static_cast<const TreeAttribute**>(Allocate(size * sizeof(void*)));
  if (table == nullptr) {
    tree.SetIncomplete();
    return nullptr;
  }
  std::fill_n(table, size, nullptr);
  const TreeAttribute* attribute = element.first_attribute;
  while (attribute != nullptr && IsNew(*attribute, table, size)) attribute = attribute->next;
  Free(table);
  return attribute;
}

}  // namespace dom
