#include "foundation/Cipher.h"

#include <cstring>
#include <gcrypt.h>

namespace zaf {
namespace {

constexpr std::size_t kKeySize = 16;

/// Whether the library can be used; initialises it on the first call.
bool InitialiseLibrary() {
  static const bool is_ready = [] {
    if (gcry_check_version(nullptr) == nullptr) return false;
    // No secret deserves pages that are locked in memory here.
    gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
    gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
    return true;
  }();
  return is_ready;
}

}  // namespace

TCipher::~TCipher() {
  if (handle_ != nullptr) gcry_cipher_close(static_cast<gcry_cipher_hd_t>(handle_));
}

bool TCipher::Prepare(std::string_view initial, std::size_t size) {
  if (initial.size() != kCipherBlockSize || size % kCipherBlockSize != 0) return false;
  if (handle_ == nullptr) {
    if (!InitialiseLibrary()) return false;
    std::byte digest[32];
    gcry_md_hash_buffer(GCRY_MD_SHA256, digest, key_text_.data(), key_text_.size());
    gcry_cipher_hd_t handle = nullptr;
    if (gcry_cipher_open(&handle, GCRY_CIPHER_BLOWFISH, GCRY_CIPHER_MODE_CBC, 0) != 0) return false;
    handle_ = handle;
    if (gcry_cipher_setkey(handle, digest, kKeySize) != 0) {
      gcry_cipher_close(handle);
      handle_ = nullptr;
      return false;
    }
  }
  return gcry_cipher_setiv(static_cast<gcry_cipher_hd_t>(handle_), initial.data(),
                           initial.size()) == 0;
}

bool TCipher::Encipher(std::string_view initial, std::span<std::byte> bytes) {
  return Prepare(initial, bytes.size()) &&
         gcry_cipher_encrypt(static_cast<gcry_cipher_hd_t>(handle_), bytes.data(), bytes.size(),
                             nullptr, 0) == 0;
}

bool TCipher::Decipher(std::string_view initial, std::span<std::byte> bytes) {
  return Prepare(initial, bytes.size()) &&
         gcry_cipher_decrypt(static_cast<gcry_cipher_hd_t>(handle_), bytes.data(), bytes.size(),
                             nullptr, 0) == 0;
}

bool ComputeDigest(ByteView bytes, TDigest& digest) {
  if (!InitialiseLibrary() || gcry_md_test_algo(GCRY_MD_BLAKE2S_128) != 0) return false;
  gcry_md_hash_buffer(GCRY_MD_BLAKE2S_128, digest.data(), bytes.data(), bytes.size());
  return true;
}

}  // namespace zaf
