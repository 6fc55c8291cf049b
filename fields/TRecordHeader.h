#pragma once

#include <cstdint>
#include <string_view>

#include "foundation/FourCharCode.h"
#include "foundation/TFixedText.h"

namespace zaf {

class TLossReporter;

/// Format numbers of legacy files, oldest to newest.
inline constexpr std::uint32_t kOldestFormat = 0x01000001;
inline constexpr std::uint32_t kWrittenFormat = 0x01000002;
inline constexpr std::uint32_t kNewestFormat = 0x01000003;

/// Code of a record header in the section map of a file.
inline constexpr FourCharCode kRecordHeaderCode = Code("head");
/// Size of a record header in a legacy file, in bytes.
inline constexpr std::uint32_t kRecordHeaderSize = 48;
/// Width of the name in the header, in bytes; a name of that length has no NUL.
inline constexpr std::size_t kRecordNameWidth = 32;

/// The header of a legacy record: of the file, at offset 0, or of an action. Numbers are in the
/// host's byte order.
struct TRecordHeader {
  std::uint32_t offset = 0;  ///< Of the header itself, from the start of the file, in bytes.
  std::uint32_t format = 0;
  FourCharCode type = kNoCode;
  std::uint32_t map_offset = 0;  ///< Of the section map, from the start of the file, in bytes.
  std::uint32_t map_count = 0;   ///< Entries in the section map.
  TFixedText<kRecordNameWidth> name{};
  TLossReporter* losses = nullptr;  ///< Of the file being read; null without an observer.
};

}  // namespace zaf
