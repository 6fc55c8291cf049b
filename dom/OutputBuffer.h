#pragma once

#include <cassert>
#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>

namespace dom {

/// Receives the bytes of a buffer before they exceed what it keeps.
class OutputSink {
 public:
  /// Takes the bytes that follow those of the previous call; it may change them. False on failure.
  [[nodiscard]] virtual bool Take(std::span<char> bytes) = 0;

 protected:
  ~OutputSink() = default;
};

/// A byte buffer that grows at the end. The memory grows geometrically, is not filled with zeros
/// and is kept by Clear, so that a buffer that is reused for many documents stops allocating.
///
/// With a sink it holds only the last bytes: a large document needs no more memory than a small
/// one, and the buffer stays in the processor's cache. A document that fits is passed on in one
/// piece.
///
/// When memory runs out, or the sink fails, the buffer has failed: it keeps its content and ignores
/// further bytes until it is cleared.
class OutputBuffer {
 public:
  /// The maximum number of bytes that it holds while it has a sink, unless more are added in one
  /// piece or its capacity was larger already.
  static constexpr std::size_t kMostHeld = std::size_t{256} << 10;

  OutputBuffer() = default;
  OutputBuffer(OutputBuffer&& other) noexcept;
  OutputBuffer& operator=(OutputBuffer&& other) noexcept;
  ~OutputBuffer();

  [[nodiscard]] const char* Data() const { return data_; }
  /// Size in bytes.
  [[nodiscard]] std::size_t Size() const { return size_; }
  [[nodiscard]] std::size_t Capacity() const { return capacity_; }
  [[nodiscard]] std::string_view View() const { return {data_, size_}; }
  /// The bytes, which may be changed in place; valid until the next Append.
  [[nodiscard]] std::span<char> Bytes() { return {data_, size_}; }
  [[nodiscard]] bool HasFailed() const { return has_failed_; }

  /// Appends bytes, which must not be part of the buffer itself.
  void Append(std::string_view bytes) {
    if (!Reserve(bytes.size()) || bytes.empty()) return;
    std::memcpy(data_ + size_, bytes.data(), bytes.size());
    size_ += bytes.size();
  }
  /// Appends the same byte `count` times.
  void Append(std::size_t count, char byte) {
    if (!Reserve(count) || count == 0) return;
    std::memset(data_ + size_, byte, count);
    size_ += count;
  }
  /// Removes all bytes and the sink.
  void Clear() {
    size_ = 0;
    has_failed_ = false;
    sink_ = nullptr;
  }

  /// Sets the sink, which receives all bytes in the buffer and all later ones until Clear. Not
  /// owned.
  void SetSink(OutputSink& sink) { sink_ = &sink; }
  /// Passes the bytes to the sink, which must be set. False when the buffer has failed.
  [[nodiscard]] bool Flush();

  /// Ensures that at least `count` more bytes fit without moving or being passed to the sink. False
  /// when the buffer has failed.
  [[nodiscard]] bool Reserve(std::size_t count) {
    return count <= capacity_ - size_ ? !has_failed_ : Grow(count);
  }
  /// The place after the last byte, for a caller that fills reserved memory itself and then calls
  /// SetEnd.
  [[nodiscard]] char* End() { return data_ + size_; }
  [[nodiscard]] std::size_t Room() const { return capacity_ - size_; }
  void SetEnd(const char* end) {
    assert(end >= data_ && static_cast<std::size_t>(end - data_) <= capacity_);
    size_ = static_cast<std::size_t>(end - data_);
  }

 private:
  bool Grow(std::size_t count);

  char* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
  bool has_failed_ = false;
  OutputSink* sink_ = nullptr;
};

}  // namespace dom
