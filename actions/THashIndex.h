#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zaf {

/// Entries that are found again by hashes of what they stand for. The hashes are those of a
/// TSeededHash, so that only chance can make two of them, or two places, the same.
template <class Entry>
class THashIndex {
 public:
  /// The entry of this hash for which `is_sought` holds; null when there is none. Valid until the
  /// next one is added.
  template <class Predicate>
  [[nodiscard]] const Entry* Find(std::uint64_t hash, const Predicate& is_sought) const {
    if (count_ == 0) return nullptr;
    const TPlace* const places = places_.data();  // A number of a place is never outside.
    hash |= kUsed;
    for (std::size_t at = PlaceOf(hash); places[at].hash != 0; at = Next(at))
      if (places[at].hash == hash && is_sought(places[at].entry)) return &places[at].entry;
    return nullptr;
  }

  /// Adds an entry that is not there.
  void Add(std::uint64_t hash, const Entry& entry) {
    if (2 * count_ >= places_.size()) Grow();
    Put({hash | kUsed, entry});
    ++count_;
  }

 private:
  struct TPlace {
    std::uint64_t hash = 0;  ///< 0: the place is free.
    Entry entry;
  };

  static constexpr std::uint64_t kUsed = std::uint64_t{1} << 63;
  static constexpr std::size_t kFewest = 32;

  [[nodiscard]] std::size_t PlaceOf(std::uint64_t hash) const {
    return static_cast<std::size_t>(hash) & (places_.size() - 1);
  }
  [[nodiscard]] std::size_t Next(std::size_t at) const { return (at + 1) & (places_.size() - 1); }

  void Put(const TPlace& place) {
    TPlace* const places = places_.data();
    std::size_t at = PlaceOf(place.hash);
    while (places[at].hash != 0) at = Next(at);
    places[at] = place;
  }

  void Grow() {
    std::vector<TPlace> other(places_.empty() ? kFewest : 2 * places_.size());
    other.swap(places_);
    for (const TPlace& place : other)
      if (place.hash != 0) Put(place);
  }

  std::vector<TPlace> places_;  ///< A power of two, at most half of them in use.
  std::size_t count_ = 0;
};

}  // namespace zaf
