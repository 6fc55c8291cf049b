#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "foundation/Status.h"

namespace zaf {

/// Bytes owned by another object.
using ByteView = std::span<const std::byte>;

/// The bytes as 8-bit text.
inline std::string_view AsText(ByteView bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The text of a text section: its bytes without one final NUL.
inline std::string_view TextOfSection(ByteView section) {
  std::string_view text = AsText(section);
  if (text.ends_with('\0')) text.remove_suffix(1);
  return text;
}

/// The characters as bytes.
inline ByteView AsBytes(std::string_view text) {
  return std::as_bytes(std::span(text.data(), text.size()));
}

/// `text` up to its first NUL; all of it without one.
inline std::string_view UntilNul(std::string_view text) { return text.substr(0, text.find('\0')); }

/// Reads numbers, texts and blocks from the front of a range of bytes, which it does not own and
/// never exceeds. The only code that converts bytes of a file to numbers, which are big-endian
/// there. An operation that finds too few bytes returns kFailure, consumes nothing and leaves its
/// result unchanged.
class TByteReader {
 public:
  explicit TByteReader(ByteView bytes) : bytes_(bytes) {}

  /// The number of bytes not read yet.
  [[nodiscard]] std::size_t Remaining() const { return bytes_.size(); }

  /// Read a 32-bit number.
  Status ReadU32(std::uint32_t& value) {
    ByteView word;
    if (const Status status = ReadBytes(4, word); status != Status::kOk) return status;
    value = Number(word.data());
    return Status::kOk;
  }
  Status ReadI32(std::int32_t& value) {
    std::uint32_t word = 0;
    if (const Status status = ReadU32(word); status != Status::kOk) return status;
    value = static_cast<std::int32_t>(word);
    return Status::kOk;
  }

  /// Reads several 32-bit numbers.
  template <std::size_t kCount>
  Status ReadU32(std::array<std::uint32_t, kCount>& values) {
    ByteView words;
    if (const Status status = ReadBytes(4 * kCount, words); status != Status::kOk) return status;
    for (std::size_t i = 0; i < kCount; ++i) values[i] = Number(words.data() + 4 * i);
    return Status::kOk;
  }

  /// Reads `count` bytes; `bytes` then refers to them in place.
  Status ReadBytes(std::size_t count, ByteView& bytes) {
    if (count > bytes_.size()) return Status::kFailure;
    bytes = bytes_.first(count);
    bytes_ = bytes_.subspan(count);
    return Status::kOk;
  }

  /// Reads a text and its NUL, which is not part of `text`. Fails without a NUL.
  Status ReadTerminated(std::string_view& text) {
    const std::size_t end = AsText(bytes_).find('\0');
    if (end == std::string_view::npos) return Status::kFailure;
    text = AsText(bytes_.first(end));
    bytes_ = bytes_.subspan(end + 1);
    return Status::kOk;
  }

 private:
  static std::uint32_t Number(const std::byte* word) {
    return std::to_integer<std::uint32_t>(word[0]) << 24 |
           std::to_integer<std::uint32_t>(word[1]) << 16 |
           std::to_integer<std::uint32_t>(word[2]) << 8 | std::to_integer<std::uint32_t>(word[3]);
  }

  ByteView bytes_;
};

/// Stores a number as TByteReader reads it.
inline void StoreU32(std::uint32_t value, std::span<std::byte, 4> bytes) {
  bytes[0] = std::byte(value >> 24 & 0xFF);
  bytes[1] = std::byte(value >> 16 & 0xFF);
  bytes[2] = std::byte(value >> 8 & 0xFF);
  bytes[3] = std::byte(value & 0xFF);
}

/// Appends the same bytes to a string with any allocator.
template <class String>
void AppendU32(std::uint32_t value, String& bytes) {
  std::byte word[4];
  StoreU32(value, word);
  bytes.append(AsText(word));
}

}  // namespace zaf
