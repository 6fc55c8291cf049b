#pragma once

#include <cstddef>
#include <cstdlib>

namespace dom {

/// The one place where this folder takes memory of a size that the input decides; null when there
/// is none.
inline void* Allocate(std::size_t size) { return std::malloc(size); }
/// The block of memory with another size; when that fails it stays as it is.
inline void* Reallocate(void* block, std::size_t size) { return std::realloc(block, size); }
inline void Free(void* block) { std::free(block); }

}  // namespace dom
