#include "foundation/Cipher.h"

#include <cstdarg>
#include <gcrypt.h>
#include <mutex>

#include "foundation/Heap.h"

namespace zaf {
namespace {

constexpr std::size_t kKeySize = 16;

/// Several times what the library takes to set itself up and to test the cipher. When there is less
/// it ends the process, or never gives the cipher again.
constexpr std::size_t kMemoryToBegin = std::size_t{64} << 10;

/// Whether the C heap has memory enough for the library to begin.
bool HasMemoryToBegin() {
  void* const block = heap::Allocate(kMemoryToBegin);
  heap::Free(block);
  return block != nullptr;
}

/// What the library says of a cipher that it cannot give. The file that needs it has its message.
void Ignore(void* /*value*/, int /*level*/, const char* /*format*/, va_list /*arguments*/) {}

/// Whether the library can be used; initialises it on the first call, and when that was not
/// possible for want of memory on a later one.
bool InitialiseLibrary() {
  static std::mutex mutex;
  static bool is_ready = false;
  const std::lock_guard lock(mutex);
  if (is_ready) return true;
  if (!HasMemoryToBegin() || gcry_check_version(nullptr) == nullptr) return false;
  gcry_set_log_handler(Ignore, nullptr);
  // No secret deserves pages that are locked in memory here.
  gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
  gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
  is_ready = true;
  return true;
}

}  // namespace

TCipher::~TCipher() {
  if (handle_ != nullptr) gcry_cipher_close(static_cast<gcry_cipher_hd_t>(handle_));
}

bool TCipher::Open() {
  if (!InitialiseLibrary()) return false;
  std::byte digest[32];
  gcry_md_hash_buffer(GCRY_MD_SHA256, digest, key_text_.data(), key_text_.size());
  gcry_cipher_hd_t handle = nullptr;
  if (gcry_cipher_open(&handle, GCRY_CIPHER_BLOWFISH, GCRY_CIPHER_MODE_CBC, 0) != 0) return false;
  if (gcry_cipher_setkey(handle, digest, kKeySize) != 0) {
    gcry_cipher_close(handle);
    return false;
  }
  handle_ = handle;
  return true;
}

bool TCipher::Prepare(std::string_view initial, std::size_t size) {
  if (initial.size() != kCipherBlockSize || size % kCipherBlockSize != 0) return false;
  if (handle_ == nullptr && !Open()) {
    // Those who decipher take a text that cannot be for a plain one.
    heap::CountFailure();
    return false;
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
