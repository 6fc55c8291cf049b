#include "dom/OutputBuffer.h"

#include <algorithm>
#include <cassert>
#include <limits>
#include <utility>

#include "dom/Heap.h"

namespace dom {
namespace {

constexpr std::size_t kFirstCapacity = std::size_t{64} << 10;

}  // namespace

OutputBuffer::OutputBuffer(OutputBuffer&& other) noexcept { *this = std::move(other); }

OutputBuffer& OutputBuffer::operator=(OutputBuffer&& other) noexcept {
  std::swap(data_, other.data_);
  std::swap(size_, other.size_);
  std::swap(capacity_, other.capacity_);
  std::swap(has_failed_, other.has_failed_);
  std::swap(sink_, other.sink_);
  return *this;
}

OutputBuffer::~OutputBuffer() { Free(data_); }

bool OutputBuffer::Flush() {
  assert(sink_ != nullptr);
  if (size_ != 0) has_failed_ = has_failed_ || !sink_->Take(Bytes());
  if (!has_failed_) size_ = 0;
  return !has_failed_;
}

bool OutputBuffer::Grow(std::size_t count) {
  constexpr std::size_t kMost = std::numeric_limits<std::ptrdiff_t>::max();
  if (has_failed_) return false;
  if (sink_ && size_ != 0 && count > kMostHeld - std::min(size_, kMostHeld))
    return Flush() && Reserve(count);
  has_failed_ = true;
  if (count > kMost - size_) return false;
  const std::size_t usual = std::min(sink_ ? kMostHeld : kMost, capacity_ + capacity_ / 2);
  const std::size_t capacity = std::max({size_ + count, usual, kFirstCapacity});
  auto* const data = static_cast<char*>(Allocate(capacity));
  if (!data) return false;
  if (size_ != 0) std::memcpy(data, data_, size_);
  Free(data_);
  data_ = data;
  capacity_ = capacity;
  has_failed_ = false;
  return true;
}

}  // namespace dom
