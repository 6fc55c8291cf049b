#pragma once

#include <cassert>
#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>

namespace dom {

/// Where the bytes of a buffer go before they become too many to be kept.
class OutputSink {
 public:
  /// Takes bytes that follow those it took before; it may change them. False when it cannot.
  [[nodiscard]] virtual bool Take(std::span<char> bytes) = 0;

 protected:
  ~OutputSink() = default;
};

/// Bytes that grow at the end. The memory grows geometrically, is not filled with zeros, and is
/// kept by Clear, so that a buffer that serves one document after another stops allocating.
///
/// While it has a sink it holds only the last bytes: no more memory is needed for a large document
/// than for a small one, and it stays in the processor's cache. A document that fits is passed on
/// in one piece.
///
/// When memory runs out, or the sink refuses, the buffer has failed: it keeps what it has and takes
/// nothing more until it is cleared.
class OutputBuffer {
 public:
  /// Bytes that it holds at most while it has a sink, unless more come in one piece or it had more
  /// capacity already.
  static constexpr std::size_t kMostHeld = std::size_t{256} << 10;

  OutputBuffer() = default;
  OutputBuffer(OutputBuffer&& other) noexcept;
  OutputBuffer& operator=(OutputBuffer&& other) noexcept;
  ~OutputBuffer();

  [[nodiscard]] const char* Data() const { return data_; }
  /// In bytes.
  [[nodiscard]] std::size_t Size() const { return size_; }
  [[nodiscard]] std::size_t Capacity() const { return capacity_; }
  [[nodiscard]] std::string_view View() const { return {data_, size_}; }
  /// The bytes, to be changed in place; valid until the next Append.
  [[nodiscard]] std::span<char> Bytes() { return {data_, size_}; }
  [[nodiscard]] bool HasFailed() const { return has_failed_; }

  /// `bytes` is no part of the buffer itself.
  void Append(std::string_view bytes) {
    if (!Reserve(bytes.size()) || bytes.empty()) return;
    std::memcpy(data_ + size_, bytes.data(), bytes.size());
    size_ += bytes.size();
  }
  /// `count` times the same byte.
  void Append(std::size_t count, char byte) {
    if (!Reserve(count) || count == 0) return;
    std::memset(data_ + size_, byte, count);
    size_ += count;
  }
  /// Empties it; it has no sink then.
  void Clear() {
    size_ = 0;
    has_failed_ = false;
    sink_ = nullptr;
  }

  /// `sink` is borrowed and takes all that is in the buffer or will be, until Clear.
  void SetSink(OutputSink& sink) { sink_ = &sink; }
  /// Passes its bytes to the sink, which must be set. False when the buffer has failed.
  [[nodiscard]] bool Flush();

  /// Makes at least `count` more bytes fit without moving or going to the sink. False when the
  /// buffer has failed.
  [[nodiscard]] bool Reserve(std::size_t count) {
    return count <= capacity_ - size_ ? !has_failed_ : Grow(count);
  }
  /// The place after the last byte, for a writer that fills reserved memory itself and then calls
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
