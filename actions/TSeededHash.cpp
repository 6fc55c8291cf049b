#include "actions/TSeededHash.h"

#include <cstring>
#include <random>

namespace zaf {
namespace {

/// The secret of this process. Every product below has a factor that depends on it: where one is
/// known, texts can be chosen that make the other count for nothing.
struct TKeys {
  std::uint64_t text;
  std::uint64_t begin;
};

const TKeys& ProcessKeys() {
  static const TKeys keys = [] {
    std::random_device device;
    const auto draw = [&] { return std::uint64_t{device()} << 32 | device(); };
    return TKeys{draw(), draw()};
  }();
  return keys;
}

/// The upper half of the product of 128 bits, folded into the lower one.
constexpr std::uint64_t FoldedProduct(std::uint64_t a, std::uint64_t b) {
#ifdef __SIZEOF_INT128__
  __extension__ using Wide = unsigned __int128;
  const Wide product = Wide{a} * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
#else
  constexpr std::uint64_t kLowHalf = 0xFFFFFFFF;
  const std::uint64_t low = (a & kLowHalf) * (b & kLowHalf);
  const std::uint64_t middle = (a >> 32) * (b & kLowHalf) + (low >> 32);
  const std::uint64_t other_middle = (a & kLowHalf) * (b >> 32) + (middle & kLowHalf);
  const std::uint64_t high = (a >> 32) * (b >> 32) + (middle >> 32) + (other_middle >> 32);
  return (other_middle << 32 | (low & kLowHalf)) ^ high;
#endif
}

// Both ways give the same.
static_assert(FoldedProduct(~std::uint64_t{0}, ~std::uint64_t{0}) == ~std::uint64_t{0});
static_assert(FoldedProduct(0x0123456789ABCDEF, 0xFEDCBA9876543210) == 0x2317228F48165BB2);

template <class Number>
std::uint64_t Load(const char* bytes) {
  Number number;
  std::memcpy(&number, bytes, sizeof number);
  return number;
}

struct TWords {
  std::uint64_t first;
  std::uint64_t second;
};

/// The `size` bytes, at most 16, where each counts: the words may overlap.
TWords LoadEnd(const char* bytes, std::size_t size) {
  if (size >= 8) return {Load<std::uint64_t>(bytes), Load<std::uint64_t>(bytes + size - 8)};
  if (size >= 4) return {Load<std::uint32_t>(bytes), Load<std::uint32_t>(bytes + size - 4)};
  if (size == 0) return {0, 0};
  const std::uint64_t last = Load<std::uint8_t>(bytes + size - 1);
  return {Load<std::uint8_t>(bytes) << 8 | Load<std::uint8_t>(bytes + size / 2), last};
}

}  // namespace

/// The construction is that of wyhash (Wang Yi, 2019, in the public domain): 16 bytes at a time, as
/// two factors of a product that is folded; then the number of bytes in the same way.
std::uint64_t TSeededHash::Extend(std::uint64_t hash, std::string_view text) {
  constexpr std::size_t kStep = 16;
  const TKeys& keys = ProcessKeys();
  hash ^= keys.begin;
  const char* bytes = text.data();
  std::size_t left = text.size();
  for (; left > kStep; left -= kStep, bytes += kStep)
    hash = FoldedProduct(Load<std::uint64_t>(bytes) ^ keys.text,
                         Load<std::uint64_t>(bytes + 8) ^ hash);
  const TWords end = LoadEnd(bytes, left);
  hash = FoldedProduct(end.first ^ keys.text, end.second ^ hash);
  return FoldedProduct(hash ^ keys.text, text.size() ^ keys.begin);
}

}  // namespace zaf
