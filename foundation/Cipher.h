#pragma once

#include <array>
#include <cstddef>
#include <nettle/blowfish.h>
#include <span>
#include <string_view>

#include "foundation/TByteReader.h"

namespace zaf {

/// Bytes of a block of the cipher.
inline constexpr std::size_t kCipherBlockSize = BLOWFISH_BLOCK_SIZE;
/// Bytes of a digest.
inline constexpr std::size_t kDigestSize = 16;

using TCipherBlock = std::array<unsigned char, kCipherBlockSize>;
using TDigest = std::array<std::byte, kDigestSize>;

/// The first 16 bytes of the SHA-256 digest (FIPS 180-4) of `bytes`.
[[nodiscard]] TDigest ComputeDigest(ByteView bytes);

/// Blowfish (B. Schneier, 1993) in CBC mode, keyed by the digest of a text. Keys that are part of a
/// program hide a text; they do not protect it. The key schedule takes as long as enciphering 4 KB,
/// so an object is made once for each key; it is constant and can be used by any number of threads.
class TCipher {
 public:
  /// Every text is enciphered with the same initial vector.
  TCipher(std::string_view key_text, const TCipherBlock& initial_vector);

  /// Transforms `bytes`, whole blocks, in place.
  void Encipher(std::span<std::byte> bytes) const;
  void Decipher(std::span<std::byte> bytes) const;

 private:
  blowfish_ctx context_;
  TCipherBlock initial_vector_;
};

}  // namespace zaf
