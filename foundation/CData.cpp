#include "foundation/CData.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>

namespace zaf {
namespace {

constexpr std::uint64_t kGreatestSize = std::numeric_limits<std::uint32_t>::max();

/// The new capacity of a buffer of `capacity` bytes that has to grow to `size`.
std::uint64_t GrownCapacity(std::uint32_t capacity, std::uint32_t size) {
  const std::uint64_t step = capacity <= 4096 ? 16 : 4096;
  return size / step * step + step;
}

}  // namespace

bool CData::Reserve(std::uint32_t size) {
  if (size <= capacity_ && capacity_ - size < kSlack) return true;
  if (capacity_ == 0) return AllocateExactly(size);
  if (size == 0) {
    CData::Release();
    return true;
  }
  const std::uint64_t target = size > capacity_ ? GrownCapacity(capacity_, size) : size;
  if (target > kGreatestSize) return false;
  void* block = heap::Reallocate(buffer_, capacity_, static_cast<std::size_t>(target));
  if (block == nullptr) return false;
  buffer_ = static_cast<char*>(block);
  capacity_ = static_cast<std::uint32_t>(target);
  length_ = std::min(length_, capacity_);
  return true;
}

void CData::Release() {
  heap::Free(buffer_);
  buffer_ = nullptr;
  capacity_ = 0;
  length_ = 0;
}

void CData::Clear() {
  length_ = 0;
  if (buffer_ != nullptr) buffer_[0] = 0;
}

bool CData::EqualsBytes(const void* bytes, std::uint32_t count) const {
  if (length_ != count) return false;
  return count == 0 || (bytes != nullptr && std::memcmp(buffer_, bytes, count) == 0);
}

bool CData::EqualsData(const CData& other) const {
  return CData::EqualsBytes(other.buffer_, other.length_);
}

TStoredData CData::Set(const void* bytes, std::uint32_t count, std::uint32_t capacity_hint) {
  if (IsInStorage(bytes)) {
    const auto offset = static_cast<std::uint32_t>(static_cast<const char*>(bytes) - buffer_);
    length_ = std::min(count, capacity_);
    const std::uint32_t held = std::min(length_, capacity_ - offset);
    std::memmove(buffer_, bytes, held);
    std::memset(buffer_ + held, 0, length_ - held);
  } else if (Reserve(std::max(count, capacity_hint))) {
    length_ = std::min(count, capacity_);
    if (bytes != nullptr && length_ != 0) std::memcpy(buffer_, bytes, length_);
  }
  return {buffer_, length_};
}

void CData::Assign(const CData& other) {
  if (!Reserve(other.length_)) return;
  const std::uint32_t length = std::min(other.length_, capacity_);
  if (length != 0 && &other != this) std::memcpy(buffer_, other.buffer_, length);
  length_ = length;
}

std::uint32_t CData::CopyOutRange(void* destination, std::uint32_t size, std::uint32_t offset,
                                  std::uint32_t count) const {
  if (destination == nullptr || offset >= length_) return 0;
  const std::uint32_t copied = std::min({count, length_ - offset, size});
  std::memcpy(destination, buffer_ + offset, copied);
  return copied;
}

std::uint32_t CData::CopyOut(void* destination, std::uint32_t size) const {
  return CData::CopyOutRange(destination, size, 0, length_);
}

void CData::Extract(CData& target, std::uint32_t offset, std::uint32_t count) const {
  if (offset >= length_) {
    target.Clear();
    return;
  }
  target.Set(buffer_ + offset, std::min(count, length_ - offset));
}

void CData::AssignTo(CData& target) const { target.Assign(*this); }

std::uint32_t CData::SpliceDecimal(std::uint32_t position, std::uint32_t remove_count,
                                   std::int32_t value) {
  char digits[16];
  const char* end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  return Splice(position, remove_count, digits, static_cast<std::uint32_t>(end - digits));
}

std::uint32_t CData::SpliceByte(std::uint32_t position, std::uint32_t remove_count, char byte) {
  return Splice(position, remove_count, &byte, 1);
}

std::uint32_t CData::Splice(std::uint32_t position, std::uint32_t remove_count, const void* bytes,
                            std::uint32_t insert_count) {
  if (length_ == 0) return Set(bytes, insert_count).length;
  if (insert_count != 0 && IsInStorage(bytes)) {
    // The bytes move before they are copied.
    CData copy;
    if (copy.CData::Set(bytes, insert_count).length != insert_count) return length_;
    return CData::Splice(position, remove_count, copy.buffer_, insert_count);
  }
  position = std::min(position, length_);
  remove_count = std::min(remove_count, length_ - position);
  const std::uint32_t kept = length_ - remove_count;
  if (insert_count > kGreatestSize - kept) return length_;
  const std::uint32_t new_length = kept + insert_count;
  if (new_length > capacity_) {
    const std::uint64_t wanted = std::uint64_t{capacity_} + insert_count - remove_count;
    if (!Reserve(static_cast<std::uint32_t>(std::min(wanted, kGreatestSize)))) return length_;
  }
  std::memmove(buffer_ + position + insert_count, buffer_ + position + remove_count,
               kept - position);
  if (bytes != nullptr && insert_count != 0) std::memcpy(buffer_ + position, bytes, insert_count);
  length_ = new_length;
  return new_length;
}

std::uint32_t CData::SpliceData(std::uint32_t position, std::uint32_t remove_count,
                                const CData& other) {
  return Splice(position, remove_count, other.buffer_, other.length_);
}

void CData::CopyFrom(const CData& other) {
  if (other.length_ == 0 || !AllocateExactly(other.length_)) return;
  std::memcpy(buffer_, other.buffer_, other.length_);
  length_ = other.length_;
}

void CData::CopyFromInner(CData& other) noexcept {
  CopyFrom(other);
  other.Clear();
}

void CData::MoveAssign(CData& other) noexcept {
  if (&other == this) return;
  if (MayUseInnerStorage() || other.MayUseInnerStorage()) {
    Assign(other);
    other.Clear();
    return;
  }
  heap::Free(buffer_);
  TakeFrom(other);
}

}  // namespace zaf
