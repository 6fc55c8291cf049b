#include "fields/RecordUpgrade.h"

#include <algorithm>
#include <cstring>

namespace zaf {
namespace {

/// The part of [offset, offset + width) that lies within `bytes`.
template <class Byte>
std::span<Byte> Clip(std::span<Byte> bytes, std::size_t offset, std::size_t width) {
  const std::size_t begin = std::min(offset, bytes.size());
  return {bytes.data() + begin, std::min(width, bytes.size() - begin)};
}

/// Copies a text into a slot of zeros, cut so that a NUL remains. Returns whether it was cut.
bool StoreText(std::string_view text, std::span<std::byte> slot) {
  const std::size_t most = slot.empty() ? 0 : slot.size() - 1;
  if (!slot.empty()) std::memcpy(slot.data(), text.data(), std::min(text.size(), most));
  return text.size() > most;
}

}  // namespace

const TRecordUpgrade* FindUpgrade(std::span<const TRecordUpgrade> upgrades, FourCharCode code,
                                  std::size_t legacy_size) {
  const auto found =
      std::find_if(upgrades.begin(), upgrades.end(), [&](const TRecordUpgrade& upgrade) {
        return upgrade.code == code &&
               (upgrade.legacy_size == kAnySize || upgrade.legacy_size == legacy_size);
      });
  return found == upgrades.end() ? nullptr : &*found;
}

Conversion ApplyUpgrade(const TRecordUpgrade& upgrade, ByteView legacy_record,
                        std::span<std::byte> record) {
  Conversion result = Conversion::kWhole;
  for (const TUpgradeStep& step : upgrade.steps) {
    const ByteView source = Clip(legacy_record, step.from, step.from_width);
    const std::span<std::byte> slot = Clip(record, step.to, step.to_width);
    switch (step.kind) {
      case TUpgradeStep::Kind::kText:
        if (StoreText(UntilNul(AsText(source)), slot)) result = Conversion::kCut;
        break;
      case TUpgradeStep::Kind::kNumber:
        if (source.size() == step.from_width && source.size() <= slot.size())
          std::copy(source.begin(), source.end(), slot.begin());
        break;
      case TUpgradeStep::Kind::kBytes:
        std::copy_n(source.begin(), std::min(source.size(), slot.size()), slot.begin());
        break;
      case TUpgradeStep::Kind::kConstant:
        StoreText(step.constant, slot);
        break;
    }
  }
  return result;
}

Conversion UpgradeRecord(std::span<const TRecordUpgrade> upgrades, FourCharCode code,
                         ByteView legacy_record, std::span<std::byte> record) {
  const TRecordUpgrade* const upgrade = FindUpgrade(upgrades, code, legacy_record.size());
  return upgrade == nullptr ? Conversion::kDropped : ApplyUpgrade(*upgrade, legacy_record, record);
}

}  // namespace zaf
