#pragma once

#include <exception>
#include <type_traits>

#include "foundation/Heap.h"

namespace zaf {

/// Runs `operation` and returns its result, or `failed` if an allocation failed in it. Standard
/// containers throw then; those of this folder keep their content, and not every caller checks
/// their result.
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
