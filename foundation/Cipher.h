#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "foundation/TByteReader.h"

namespace zaf {

/// Bytes of a block of the cipher.
inline constexpr std::size_t kCipherBlockSize = 8;
/// Bytes of a digest.
inline constexpr std::size_t kDigestSize = 16;

using TDigest = std::array<std::byte, kDigestSize>;

/// Blowfish (B. Schneier, 1993) in CBC mode. The key is the first 16 bytes of the SHA-256 digest
/// (FIPS 180-4) of a text. Keys that are part of a program hide a text; they do not protect it.
/// The library behind it is initialised when the first cipher is used, not before. One object
/// serves one thread at a time.
class TCipher {
 public:
  explicit TCipher(std::string_view key_text) : key_text_(key_text) {}
  TCipher(const TCipher&) = delete;
  TCipher& operator=(const TCipher&) = delete;
  ~TCipher();

  /// Transforms `bytes`, whole blocks, in place. `initial` has the size of a block. False, with
  /// the bytes undefined, when the cipher cannot be had, which counts as memory that ran out, or
  /// when the sizes are not as said.
  [[nodiscard]] bool Encipher(std::string_view initial, std::span<std::byte> bytes);
  [[nodiscard]] bool Decipher(std::string_view initial, std::span<std::byte> bytes);

 private:
  bool Open();
  bool Prepare(std::string_view initial, std::size_t size);

  std::string_view key_text_;
  void* handle_ = nullptr;
};

/// The 16-byte BLAKE2s digest (RFC 7693) of `bytes`, without a key. False when it cannot be had.
[[nodiscard]] bool ComputeDigest(ByteView bytes, TDigest& digest);

}  // namespace zaf
