#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "fields/TRecordHeader.h"
#include "foundation/FourCharCode.h"

namespace zaf {

/// The sections of a legacy file in the order in which they are read: those of the file's own
/// record and, between them, those of the records of its actions. The methods that add may throw
/// std::bad_alloc.
class TReadSections {
 public:
  using TRange = std::pair<std::uint64_t, std::uint64_t>;  ///< Offset and end, in bytes.

  struct TSection {
    FourCharCode code;
    std::uint32_t offset;
    std::uint32_t length;
    /// The code of the field that it was read into; kNoCode: none, or a later one replaces it.
    FourCharCode field = kNoCode;
  };

  void BeginFile(const TRecordHeader& header) { file_ = RecordOf(header); }
  /// Begins the record of an action; until EndAction it is the current one.
  void BeginAction(const TRecordHeader& header);
  void EndAction() { is_in_action_ = false; }
  [[nodiscard]] bool IsInAction() const { return is_in_action_; }

  /// Begins a section of the current record.
  void Begin(FourCharCode code, std::uint32_t offset, std::uint32_t length) {
    Current().push_back({code, offset, length});
  }
  /// Notes the field that the section begun last is read into. Returns whether an earlier section
  /// of the record may have the same.
  bool SetField(FourCharCode field);
  /// Returns the earlier section with this field, which the one begun last replaces; null if not
  /// found. Valid until the next section begins.
  const TSection* TakeReplaced(FourCharCode field);

  /// Excludes bytes from the uncovered ones.
  void Cover(std::uint64_t offset, std::uint64_t length);
  /// Returns the ranges of the file, which has `size` bytes, that no header, map or section covers,
  /// in their order. Called once, after all sections.
  [[nodiscard]] std::vector<TRange> TakeUncovered(std::uint64_t size);

  /// The number of records of actions so far, which is the number of the last one.
  [[nodiscard]] std::uint32_t GetRecordNumber() const {
    return static_cast<std::uint32_t>(actions_.size());
  }
  /// The sections of a record; 0 is the number of the file's own.
  [[nodiscard]] std::span<const TSection> OfRecord(std::uint32_t number) const;
  /// The offset of the record header of an action.
  [[nodiscard]] std::uint32_t OffsetOf(std::uint32_t number) const {
    return actions_[number - 1].offset;
  }

 private:
  /// A bit for each code; several codes can have the same.
  using TCodeSet = std::uint64_t;
  struct TRecord {
    std::uint32_t offset;  ///< Of its header.
    TRange map;
    std::size_t first;  ///< Of its sections, for an action.
  };

  [[nodiscard]] TRecord RecordOf(const TRecordHeader& header) const;
  [[nodiscard]] std::vector<TSection>& Current() {
    return is_in_action_ ? action_sections_ : file_sections_;
  }
  void CoverRecord(const TRecord& record, std::span<const TSection> sections);

  TRecord file_{};
  std::vector<TRecord> actions_;
  std::vector<TSection> file_sections_;
  std::vector<TSection> action_sections_;  ///< Of all actions.
  TCodeSet file_fields_ = 0;
  TCodeSet action_fields_ = 0;  ///< Of the last action.
  bool is_in_action_ = false;
  std::vector<TRange> covered_;  ///< Outside of records, until the uncovered ranges are taken.
};

}  // namespace zaf
