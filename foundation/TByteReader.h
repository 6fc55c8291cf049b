#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "foundation/Status.h"

namespace zaf {

/// Bytes that belong to somebody else.
using ByteView = std::span<const std::byte>;

/// The same bytes as 8-bit text.
inline std::string_view AsText(ByteView bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The text of a text section: one final NUL is no part of it.
inline std::string_view TextOfSection(ByteView section) {
  std::string_view text = AsText(section);
  if (text.ends_with('\0')) text.remove_suffix(1);
  return text;
}

/// The same text as bytes.
inline ByteView AsBytes(std::string_view text) {
  return std::as_bytes(std::span(text.data(), text.size()));
}

/// `text` up to its first NUL; all of it when it has none.
inline std::string_view UntilNul(std::string_view text) { return text.substr(0, text.find('\0')); }

/// Takes numbers, texts and blocks from the front of a range of bytes that it does not own and
/// never reads beyond. It is the one place that turns the bytes of a file into numbers: they are
/// big-endian there. An operation that finds too few bytes returns kFailure, takes nothing and
/// leaves its result as it was.
class TByteReader {
 public:
  explicit TByteReader(ByteView bytes) : bytes_(bytes) {}

  /// Bytes that are left.
  [[nodiscard]] std::size_t Remaining() const { return bytes_.size(); }

  /// Takes a 32-bit number, signed or not.
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

  /// Takes several 32-bit numbers.
  template <std::size_t kCount>
  Status ReadU32(std::array<std::uint32_t, kCount>& values) {
    ByteView words;
    if (const Status status = ReadBytes(4 * kCount, words); status != Status::kOk) return status;
    for (std::size_t i = 0; i < kCount; ++i) values[i] = Number(words.data() + 4 * i);
    return Status::kOk;
  }

  /// Takes `count` bytes; `bytes` then refers to them, in place.
  Status ReadBytes(std::size_t count, ByteView& bytes) {
    if (count > bytes_.size()) return Status::kFailure;
    bytes = bytes_.first(count);
    bytes_ = bytes_.subspan(count);
    return Status::kOk;
  }

  /// Takes a text up to its NUL, which is taken but is no part of `text`; without a NUL there is
  /// no text to take.
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

/// Writes a number the way TByteReader reads it.
inline void StoreU32(std::uint32_t value, std::span<std::byte, 4> bytes) {
  bytes[0] = std::byte(value >> 24 & 0xFF);
  bytes[1] = std::byte(value >> 16 & 0xFF);
  bytes[2] = std::byte(value >> 8 & 0xFF);
  bytes[3] = std::byte(value & 0xFF);
}

/// Appends it to `bytes`, a string of any allocator.
template <class String>
void AppendU32(std::uint32_t value, String& bytes) {
  std::byte word[4];
  StoreU32(value, word);
  bytes.append(AsText(word));
}

}  // namespace zaf
