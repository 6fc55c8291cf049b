#pragma once

#include <exception>
#include <type_traits>

#include "foundation/Heap.h"

namespace zaf {

/// Does what `operation` does and returns what it returns; but `failed` when memory ran out in it,
/// whoever noticed: containers of the standard library throw, those of this folder keep what they
/// had, and not everybody asks them.
template <class Operation, class Result = std::invoke_result_t<Operation>>
Result Attempt(Operation operation, std::type_identity_t<Result> failed) {
  const heap::TMemoryWatch memory;
  try {
    Result result = operation();
    if (!memory.HasRunOut()) return result;
  } catch (const std::exception&) {
  }
  return failed;
}

}  // namespace zaf
