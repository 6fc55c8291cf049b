// Mutates legacy files by their parts. Random changes of bytes rarely keep the offsets valid; here
// records and sections are changed, repeated, moved and taken from other files, and the file is
// reassembled from them.

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>

#include "fuzz/LegacyParts.h"
#include "tests/support/LegacyFile.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t max_size);

namespace zaf::fuzz {
namespace {

constexpr std::size_t kLongestGrowth = 64;

class TLegacyMutation {
 private:
  std::size_t Below(std::size_t limit) { return random_() % limit; }
  template <class Items>
  auto& Choose(Items& items) {
    return items[Below(items.size())];
  }
  template <class Items>
  std::ptrdiff_t Place(const Items& items) {
    return static_cast<std::ptrdiff_t>(items.empty() ? 0 : Below(items.size()));
  }

 public:
  explicit TLegacyMutation(unsigned seed) : random_(seed) {}

  void Apply(TFileParts& parts) {
    TRecordParts& record = Choose(parts);
    switch (Below(8)) {
      case 0:
        return ChangeHead(record);
      case 1:
        return ChangeRecords(parts);
      case 2:
        return Hang(record, Choose(parts).name);
      case 3:
        // Inserts a section of another record, or a second one of the same record.
        if (const TRecordParts& source = Choose(parts); !source.sections.empty()) {
          const TPart section = Choose(source.sections);
          record.sections.insert(record.sections.begin() + Place(record.sections), section);
        }
        return;
      default:
        if (!record.sections.empty()) ChangeSection(record);
    }
  }

  /// Inserts records or sections of another file into this one.
  void Cross(TFileParts& parts, const TFileParts& others) {
    const TRecordParts other = Choose(others);
    if (Below(2) == 0) {
      parts.insert(parts.begin() + 1 + Place(parts) / 2, other);
      Hang(parts[1], parts.back().name);
    } else if (!other.sections.empty()) {
      Choose(parts).sections.push_back(Choose(other.sections));
    }
  }

 private:
  /// Changes bytes with the library's mutator, which uses the dictionary. Keeps their number unless
  /// `growth` allows more.
  static void Change(std::string& bytes, std::size_t growth) {
    const std::size_t size = bytes.size();
    bytes.resize(size + growth);
    if (bytes.empty()) return;
    auto* const data = reinterpret_cast<std::uint8_t*>(bytes.data());
    const std::size_t changed = LLVMFuzzerMutate(data, size, bytes.size());
    bytes.resize(growth == 0 ? size : changed);
  }

  void ChangeHead(TRecordParts& record) {
    if (Below(3) == 0) {
      Change(record.name, kLongestGrowth / 4);
    } else if (Below(8) == 0) {
      record.format = 0x01000000 + static_cast<std::uint32_t>(Below(5));
    } else {
      Change(record.type, 0);
    }
  }

  void ChangeRecords(TFileParts& parts) {
    if (parts.size() < 2) return;
    const std::ptrdiff_t place = 1 + static_cast<std::ptrdiff_t>(Below(parts.size() - 1));
    const TRecordParts record = parts[static_cast<std::size_t>(place)];
    if (Below(3) != 0) parts.erase(parts.begin() + place);
    const std::size_t copies = Below(3);
    for (std::size_t i = 0; i < copies && parts.size() < kMostRecords; ++i)
      parts.insert(parts.begin() + 1 + Place(parts) * (parts.size() > 1 ? 1 : 0), record);
  }

  static void Hang(TRecordParts& record, const std::string& parent) {
    const auto found = std::find_if(record.sections.begin(), record.sections.end(),
                                    [](const TPart& section) { return section.code == "pare"; });
    if (found == record.sections.end()) {
      record.sections.push_back({"pare", parent});
    } else {
      found->bytes = parent;
    }
  }

  void ChangeSection(TRecordParts& record) {
    const std::ptrdiff_t place = Place(record.sections);
    TPart& section = record.sections[static_cast<std::size_t>(place)];
    switch (Below(8)) {
      case 0:
        record.sections.erase(record.sections.begin() + place);
        return;
      case 1:
        Change(section.code, 0);
        return;
      case 2:
        RepeatItems(section.bytes);
        return;
      default:
        Change(section.bytes, kLongestGrowth);
    }
  }

  /// Makes a list with one and a half or two times the items; it remains valid if it is two.
  void RepeatItems(std::string& list) {
    if (list.size() < 4 || list.size() > 4096) return;
    const std::uint32_t count = Number32At(list, 0);
    const std::string items = list.substr(4);
    list = test::BigEndian(count * 2) + items + items.substr(Below(2) * (items.size() / 2));
  }

  std::minstd_rand random_;
};

/// Copies the file if it fits; returns its length, or 0.
std::size_t Deliver(const std::string& file, std::uint8_t* data, std::size_t max_size) {
  return file.size() <= max_size ? file.copy(reinterpret_cast<char*>(data), max_size) : 0;
}

std::string_view View(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace
}  // namespace zaf::fuzz

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t max_size, unsigned seed) {
  using namespace zaf::fuzz;
  std::size_t delivered = 0;
  if (seed % 4 != 0) {
    TLegacyMutation mutation(seed);
    TFileParts parts = TakeApart(View(data, size));
    for (unsigned i = 0; i <= seed / 4 % 3; ++i) mutation.Apply(parts);
    delivered = Deliver(PutTogether(parts), data, max_size);
  }
  return delivered != 0 ? delivered : LLVMFuzzerMutate(data, size, max_size);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data, std::size_t size,
                                                 const std::uint8_t* other, std::size_t other_size,
                                                 std::uint8_t* out, std::size_t max_size,
                                                 unsigned seed) {
  using namespace zaf::fuzz;
  TFileParts parts = TakeApart(View(data, size));
  TLegacyMutation(seed).Cross(parts, TakeApart(View(other, other_size)));
  return Deliver(PutTogether(parts), out, max_size);
}
