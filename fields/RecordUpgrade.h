#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "foundation/FourCharCode.h"
#include "foundation/TByteReader.h"

namespace zaf {

/// One step of an upgrade: how a field of an older record gets into the current one.
struct TUpgradeStep {
  enum class Kind : std::uint8_t {
    kText,      ///< A text up to its NUL or its width, cut to the new slot's width less one.
    kNumber,    ///< A number of 4 bytes, in the file's byte order; one that is not whole is 0.
    kBytes,     ///< Bytes as they stand, as far as the older record reaches.
    kConstant,  ///< No field of the older record: `constant` and its NUL.
  };

  Kind kind;
  std::uint16_t from;        ///< Offset in the older record.
  std::uint16_t from_width;  ///< Bytes there.
  std::uint16_t to;          ///< Offset in the current record.
  std::uint16_t to_width;    ///< Bytes there.
  std::string_view constant = {};
};

/// A name: older records have 32 bytes for it, the current ones 128.
constexpr TUpgradeStep WidenName(std::size_t from, std::size_t to) {
  return {TUpgradeStep::Kind::kText, static_cast<std::uint16_t>(from), 32,
          static_cast<std::uint16_t>(to), 128};
}

/// Everything, as far as both records reach.
inline constexpr TUpgradeStep kCopyWhatFits[] = {
    {TUpgradeStep::Kind::kBytes, 0, 0xFFFF, 0, 0xFFFF},
};

/// Any size of an older record.
inline constexpr std::size_t kAnySize = 0;

/// The upgrade of the records of one list section from one older size.
struct TRecordUpgrade {
  FourCharCode code;
  std::size_t legacy_size;  ///< Bytes of the older record, or kAnySize.
  std::span<const TUpgradeStep> steps;
};

/// The first upgrade of `upgrades` for `code` and a record of `legacy_size` bytes; null when there
/// is none.
const TRecordUpgrade* FindUpgrade(std::span<const TRecordUpgrade> upgrades, FourCharCode code,
                                  std::size_t legacy_size);

/// Fills `record`, which is all zero, from `legacy_record`. A step that would reach beyond either
/// of them does as much as fits.
void ApplyUpgrade(const TRecordUpgrade& upgrade, ByteView legacy_record,
                  std::span<std::byte> record);

/// Finds the upgrade and applies it; false when there is none.
bool UpgradeRecord(std::span<const TRecordUpgrade> upgrades, FourCharCode code,
                   ByteView legacy_record, std::span<std::byte> record);

}  // namespace zaf
