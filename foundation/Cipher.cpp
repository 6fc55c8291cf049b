#include "foundation/Cipher.h"

#include <cassert>
#include <cstdint>
#include <nettle/cbc.h>
#include <nettle/sha2.h>

namespace zaf {
namespace {

// The library passes contexts as untyped pointers.
void EncryptBlocks(const void* context, std::size_t size, std::uint8_t* target,
                   const std::uint8_t* source) {
  blowfish_encrypt(static_cast<const blowfish_ctx*>(context), size, target, source);
}

void DecryptBlocks(const void* context, std::size_t size, std::uint8_t* target,
                   const std::uint8_t* source) {
  blowfish_decrypt(static_cast<const blowfish_ctx*>(context), size, target, source);
}

std::uint8_t* Octets(std::span<std::byte> bytes) {
  return reinterpret_cast<std::uint8_t*>(bytes.data());
}

}  // namespace

TDigest ComputeDigest(ByteView bytes) {
  sha256_ctx context;
  sha256_init(&context);
  sha256_update(&context, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
  TDigest digest;
  sha256_digest(&context, digest.size(), Octets(digest));
  return digest;
}

TCipher::TCipher(std::string_view key_text, const TCipherBlock& initial_vector)
    : initial_vector_(initial_vector) {
  TDigest key = ComputeDigest(AsBytes(key_text));
  // The result reports only whether the key is a weak one.
  blowfish_set_key(&context_, key.size(), Octets(key));
}

void TCipher::Encipher(std::span<std::byte> bytes) const {
  assert(bytes.size() % kCipherBlockSize == 0);
  TCipherBlock vector = initial_vector_;
  cbc_encrypt(&context_, EncryptBlocks, kCipherBlockSize, vector.data(), bytes.size(),
              Octets(bytes), Octets(bytes));
}

void TCipher::Decipher(std::span<std::byte> bytes) const {
  assert(bytes.size() % kCipherBlockSize == 0);
  TCipherBlock vector = initial_vector_;
  cbc_decrypt(&context_, DecryptBlocks, kCipherBlockSize, vector.data(), bytes.size(),
              Octets(bytes), Octets(bytes));
}

}  // namespace zaf
