#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "foundation/Heap.h"
#include "foundation/TByteReader.h"

namespace zaf {

/// The result -1 of operations without an index or position.
inline constexpr std::uint32_t kNoIndex = 0xFFFFFFFFU;

/// The result of Set: where the data is and how long it is now, in bytes (of a text with its NUL).
struct TStoredData {
  char* data;
  std::uint32_t length;
};

/// A growable buffer of bytes: raw sections of files, and the base of texts and arrays. Owns its
/// storage. All sizes, offsets and counts are in bytes.
///
/// Capacity follows fixed rules. The first reservation and a shrinking one are exact; a growing one
/// is rounded to the next multiple of 16 above the request (of 4096 when the capacity was above
/// 4096). A buffer shrinks when the request is at least 32 bytes less than its capacity.
///
/// Nothing throws. When memory is insufficient, Reserve returns false and the buffer is unchanged,
/// also after Set, Assign and Splice.
///
/// The order of the virtual operations is fixed; derived classes append their own.
class CData {
 public:
  CData() = default;
  /// Reserves `size` bytes; the length is 0.
  explicit CData(std::uint32_t size) { CData::Reserve(size); }
  CData(const CData& other) { CopyFrom(other); }
  /// Takes the storage of `other` and leaves it empty (storage inside `other` itself is copied).
  CData(CData&& other) noexcept { TakeFrom(other); }
  CData& operator=(const CData& other) {
    if (this != &other) Assign(other);
    return *this;
  }
  CData& operator=(CData&& other) noexcept {
    MoveAssign(other);
    return *this;
  }
  virtual ~CData() {
    if (buffer_ != nullptr) heap::Free(buffer_);
  }

  /// The first byte; null when nothing is allocated.
  virtual char* GetData() { return buffer_; }

  /// Changes the capacity to `size` by the rules above and cuts the length to it. A request of 0
  /// always succeeds.
  virtual bool Reserve(std::uint32_t size);

  /// Frees the storage: capacity and length 0.
  virtual void Release();

  /// Length 0; the storage stays, its first byte becomes 0.
  virtual void Clear();

  [[nodiscard]] virtual bool EqualsBytes(const void* bytes, std::uint32_t count) const;
  [[nodiscard]] virtual bool EqualsData(const CData& other) const;

  /// Replaces the content by a copy of the bytes, after reserving the greater of `count` and
  /// `capacity_hint`. When that fails, the buffer and its length are unchanged. Null `bytes` only
  /// set the length; the content is then unspecified, to be filled through GetData.
  ///
  /// The bytes may be part of this buffer's storage: nothing is reserved then, `count` is cut to
  /// the capacity, and what would lie after the storage is 0.
  virtual TStoredData Set(const void* bytes, std::uint32_t count, std::uint32_t capacity_hint = 0);

  virtual void Assign(const CData& other);

  /// Copies min(count, length - offset, size) bytes from `offset` on; returns how many. 0 for a
  /// null destination.
  virtual std::uint32_t CopyOutRange(void* destination, std::uint32_t size, std::uint32_t offset,
                                     std::uint32_t count) const;
  virtual std::uint32_t CopyOut(void* destination, std::uint32_t size) const;

  /// Sets `target`, which may be this buffer, to a copy of that range, cut to the length.
  virtual void Extract(CData& target, std::uint32_t offset, std::uint32_t count) const;

  /// The target's Assign with this buffer.
  virtual void AssignTo(CData& target) const;

  /// The Splice operations replace `remove_count` bytes at `position` by others and return the new
  /// length. On a buffer of length 0 they set, whatever the position. SpliceDecimal inserts the
  /// decimal digits of `value`, with "-" when it is negative.
  virtual std::uint32_t SpliceDecimal(std::uint32_t position, std::uint32_t remove_count,
                                      std::int32_t value);
  virtual std::uint32_t SpliceByte(std::uint32_t position, std::uint32_t remove_count, char byte);
  /// The bytes may be part of this buffer; null inserts unspecified bytes. The removed range is cut
  /// to the buffer. On failure the buffer and its length are unchanged.
  virtual std::uint32_t Splice(std::uint32_t position, std::uint32_t remove_count,
                               const void* bytes, std::uint32_t insert_count);
  virtual std::uint32_t SpliceData(std::uint32_t position, std::uint32_t remove_count,
                                   const CData& other);

  [[nodiscard]] const char* GetData() const { return buffer_; }
  [[nodiscard]] std::uint32_t GetLength() const { return length_; }      ///< Bytes in use.
  [[nodiscard]] std::uint32_t GetCapacity() const { return capacity_; }  ///< Bytes allocated.

  /// The bytes in use; valid until the buffer changes.
  [[nodiscard]] ByteView Bytes() const { return std::as_bytes(std::span(buffer_, length_)); }

  /// The byte at `index`; a shared byte that is always 0 for an index outside the bytes in use.
  [[nodiscard]] const char& ByteAt(std::uint32_t index) const {
    return index < length_ ? buffer_[index] : kZeroByte;
  }

 protected:
  static constexpr char kZeroByte = 0;

  /// A buffer whose capacity exceeds a request by less than this does not shrink.
  static constexpr std::uint32_t kSlack = 32;

  /// For a derived class whose storage is an array directly after this base: uses that array and
  /// never frees it. The derived class overrides Reserve and Release, copies instead of moving, and
  /// calls DropStorage in its destructor.
  void UseInnerStorage(char* bytes, std::uint32_t size) {
    buffer_ = bytes;
    capacity_ = size;
  }
  void DropStorage() { buffer_ = nullptr; }

  [[nodiscard]] char* Buffer() const { return buffer_; }
  /// Not greater than the capacity.
  void SetLength(std::uint32_t length) { length_ = length; }

  /// Whether `bytes` points into this buffer's storage; false for null.
  [[nodiscard]] bool IsInStorage(const void* bytes) const {
    const auto address = reinterpret_cast<std::uintptr_t>(bytes);
    const auto first = reinterpret_cast<std::uintptr_t>(buffer_);
    return buffer_ != nullptr && address - first < capacity_;
  }

  /// Storage of exactly `size` bytes (greater than 0) for a buffer that has none.
  bool AllocateExactly(std::uint32_t size) {
    buffer_ = static_cast<char*>(heap::Allocate(size));
    if (buffer_ == nullptr) return false;
    buffer_[0] = 0;
    capacity_ = size;
    return true;
  }

 private:
  /// Whether the storage may be directly after this base. A heap block that happens to begin there
  /// counts too; it is then copied although it could have been moved.
  [[nodiscard]] bool MayUseInnerStorage() const {
    return reinterpret_cast<std::uintptr_t>(buffer_) ==
           reinterpret_cast<std::uintptr_t>(this) + sizeof(CData);
  }
  void CopyFrom(const CData& other);          // Into a buffer without storage.
  void CopyFromInner(CData& other) noexcept;  // The same, and clears `other`.
  void MoveAssign(CData& other) noexcept;
  void TakeFrom(CData& other) noexcept {  // Into a buffer without storage.
    if (other.MayUseInnerStorage()) return CopyFromInner(other);
    buffer_ = other.buffer_;
    capacity_ = other.capacity_;
    length_ = other.length_;
    other.buffer_ = nullptr;
    other.capacity_ = 0;
    other.length_ = 0;
  }

  char* buffer_ = nullptr;
  std::uint32_t capacity_ = 0;
  std::uint32_t length_ = 0;
};

}  // namespace zaf
