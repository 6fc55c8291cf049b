#pragma once

#include <cstddef>
#include <new>

namespace dom {

/// Memory without exceptions, for everything in this folder that has a size that the input decides:
/// null when there is none.
inline void* Allocate(std::size_t size) { return ::operator new(size, std::nothrow); }
inline void Free(void* block) { ::operator delete(block); }

}  // namespace dom
