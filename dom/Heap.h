#pragma once

#include <cstddef>
#include <new>

namespace dom {

/// Memory without exceptions, for everything in this folder whose size depends on the input. Null
/// when memory runs out.
inline void* Allocate(std::size_t size) { return ::operator new(size, std::nothrow); }
inline void Free(void* block) { ::operator delete(block); }

}  // namespace dom
