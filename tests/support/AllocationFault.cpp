#include "tests/support/AllocationFault.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace zaf::test {
namespace {

thread_local constinit TAllocationFault* current_fault = nullptr;

}  // namespace

TAllocationFault::TAllocationFault(std::uint64_t failing)
    : outer_(current_fault), failing_(failing) {
  current_fault = this;
}

TAllocationFault::~TAllocationFault() { current_fault = outer_; }

}  // namespace zaf::test

void* operator new(std::size_t size, const std::nothrow_t& /*unused*/) noexcept {
  using zaf::test::current_fault;
  return current_fault != nullptr && current_fault->Strikes() ? nullptr : std::malloc(size | 1);
}

void* operator new(std::size_t size) {
  void* const block = operator new(size, std::nothrow);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t /*size*/) noexcept { std::free(block); }
