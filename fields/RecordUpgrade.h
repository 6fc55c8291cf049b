#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "fields/TLegacySection.h"
#include "foundation/FourCharCode.h"
#include "foundation/TByteReader.h"

namespace zaf {

/// One step of an upgrade: copies a field of an older record into the current one.
struct TUpgradeStep {
  enum class Kind : std::uint8_t {
    kText,      ///< A text up to its NUL or its width, cut to the new slot's width less one.
    kNumber,    ///< A 32-bit number, in the file's byte order; 0 if the older record ends in it.
    kBytes,     ///< Bytes, unchanged, as far as the older record reaches.
    kConstant,  ///< `constant` and its NUL, instead of a field of the older record.
  };

  Kind kind;
  std::uint16_t from;        ///< Offset in the older record.
  std::uint16_t from_width;  ///< In bytes.
  std::uint16_t to;          ///< Offset in the current record.
  std::uint16_t to_width;    ///< In bytes.
  std::string_view constant = {};
};

/// A name, which has 32 bytes in older records and 128 in the current ones.
constexpr TUpgradeStep WidenName(std::size_t from, std::size_t to) {
  return {TUpgradeStep::Kind::kText, static_cast<std::uint16_t>(from), 32,
          static_cast<std::uint16_t>(to), 128};
}

/// Copies all bytes, as far as both records reach.
inline constexpr TUpgradeStep kCopyWhatFits[] = {
    {TUpgradeStep::Kind::kBytes, 0, 0xFFFF, 0, 0xFFFF},
};

/// Matches older records of any size.
inline constexpr std::size_t kAnySize = 0;

/// The upgrade of the records of one list section from one older size.
struct TRecordUpgrade {
  FourCharCode code;
  std::size_t legacy_size;  ///< Bytes of the older record, or kAnySize.
  std::span<const TUpgradeStep> steps;
};

/// The first upgrade for `code` and a record of `legacy_size` bytes; null if not found.
const TRecordUpgrade* FindUpgrade(std::span<const TRecordUpgrade> upgrades, FourCharCode code,
                                  std::size_t legacy_size);

/// Fills `record`, which must be all zero, from `legacy_record`. A step that reaches beyond the end
/// of either is cut there. kWhole or kCut.
Conversion ApplyUpgrade(const TRecordUpgrade& upgrade, ByteView legacy_record,
                        std::span<std::byte> record);

/// Finds the upgrade and applies it; kDropped if not found.
Conversion UpgradeRecord(std::span<const TRecordUpgrade> upgrades, FourCharCode code,
                         ByteView legacy_record, std::span<std::byte> record);

}  // namespace zaf
