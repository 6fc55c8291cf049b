#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dom/dom.h"
#include "fields/TByteAccount.h"
#include "fields/TDocumentPlaces.h"
#include "fields/TLossObserver.h"
#include "fields/TRecordHeader.h"
#include "foundation/FourCharCode.h"
#include "foundation/TByteReader.h"

namespace zaf {

struct TLegacySection;
struct TProperty;

/// What happened, in the order of the table of sentences in TLossReporter.cpp.
enum class LossReason : std::uint8_t {
  kUnknownSection,
  kDroppedSection,
  kUnusedSection,
  kRepeatedSection,
  kIncompleteMap,
  kTooNew,
  kShortList,
  kUnreadBytes,
  kUnreferencedBytes,
  kUnknownRecordSize,
  kEmptiedRecord,
  kItemWithoutColumn,
  kItemsOfSameColumn,
  kMailParameters,
  kCutText,
  kCutName,
  kCutAtNul,
  kCutRecordText,
  kCutRecord,
  kUnknownValue,
  kUnknownWord,
  kUnknownType,
  kEmptyText,
  kRemovedSlash,
  kOtherKind,
  kDroppedField,
  kDroppedCharacters,
  kDroppedInName,
  kReplacedCharacters,
  kChangedLineEnds,
  kAddedLineFeeds,
  kIgnoredElement,
  kIgnoredAttribute,
  kIgnoredText,
};

/// Reports the losses of one file to an observer, each with its place: the action that is being
/// read or written, and its section or, in a document, the line and column. Readers, codecs and
/// writers have a pointer to it, null when nobody observes. The methods may throw std::bad_alloc.
///
/// A section without XML form is a loss only of an XML document, so those losses are kept until
/// ReportPending.
class TLossReporter {
 public:
  /// The observer outlives the reporter.
  explicit TLossReporter(TLossObserver& observer) : observer_(observer) {}

  // A legacy file is read.

  /// Begins a file with these bytes, which stay as they are until EndFile, and its own record.
  [[gnu::cold, gnu::noinline]] void BeginFile(ByteView image, const TRecordHeader& header);
  /// Begins the record of an action.
  [[gnu::cold, gnu::noinline]] void BeginAction(const TRecordHeader& header);
  /// Goes on with the file's own record.
  [[gnu::cold, gnu::noinline]] void EndAction();
  /// Begins a section of the current record.
  [[gnu::cold, gnu::noinline]] void BeginSection(FourCharCode code, std::uint32_t offset,
                                                 std::uint32_t length);
  /// Records bytes that are not to be reported as unreferenced, without an access to them.
  void Cover(std::uint64_t offset, std::uint64_t length);
  /// Ends the file. Reports the bytes that nothing covers and that are not all NUL.
  [[gnu::cold, gnu::noinline]] void EndFile();

  /// Notes a section that is about to be read into the field of `row`. Reports it when the row has
  /// no XML form, and reports the section that it replaces.
  void NoteField(const TProperty& row, const TLegacySection& section);
  /// Reports a section that has no XML form; none that is all NUL.
  void ReportDropped(const TLegacySection& section);
  /// Reports the sections of the action read last that were read into fields: it has no XML form.
  void ReportDroppedAction(std::string_view name);
  /// Takes back what ReportDropped reported of the sections of this code in the current record:
  /// another section holds the same.
  void RetractDropped(FourCharCode code);
  /// Reports bytes of a section from `used` on, which its reader leaves out, if they are not all
  /// NUL.
  [[gnu::cold, gnu::noinline]] void ReportUnread(const TLegacySection& section, std::uint64_t used);

  // A document is read.

  /// Begins the reading of a document that refers to these bytes, which stay as they are meanwhile.
  void BeginDocument(std::string_view text) { places_ = TDocumentPlaces(text); }
  /// Sets the element that what follows concerns.
  void SetElement(dom::Element element) { element_ = element; }
  /// Reports the attributes, elements and texts below `root` that were not read.
  void ReportIgnored(dom::Element root);

  // An application is written.

  /// Sets that it is written as a legacy file.
  void SetLegacyTarget() { is_legacy_target_ = true; }

  /// Begins the application itself, then each action; `record_offset` is that of its record in the
  /// legacy file.
  void BeginWriting();
  void BeginWriting(std::string_view action, std::uint32_t record_offset);
  /// Reports a loss of the action's name.
  void ReportName(LossReason reason, std::uint32_t record_offset);
  /// Sets the section of rows that have none: those of a part or of the records of a list.
  void SetSection(FourCharCode section) { outer_section_ = section; }
  [[nodiscard]] FourCharCode GetSection() const { return outer_section_; }
  /// Reports control characters of a text that is written to XML and, unless it is an attribute,
  /// CRs. `name` is the element or attribute.
  void ReportText(std::string_view text, std::string_view name, FourCharCode section = kNoCode);
  void ReportText(std::string_view text, const TProperty& row);
  /// Reports a number that is written as another one or not at all.
  void ReportValue(const TProperty& row);
  /// Reports what is lost because the application is written as XML.
  void ReportPending();

  // In general.

  [[nodiscard]] TByteAccount* GetAccount() const { return observer_.GetAccount(); }

  /// Sets the action that what follows concerns.
  void SetAction(std::string_view name) { action_ = name; }
  /// Reports a loss. `detail` replaces the `%` of the sentence.
  void Report(LossReason reason, std::string_view detail = {});
  void Report(LossReason reason, const TLegacySection& section, std::string_view detail = {});
  /// The same of bytes that are in no section.
  void ReportBytes(LossReason reason, std::uint64_t offset, std::uint64_t length);
  /// The same of the last section of this code in the record that is being read or written; of the
  /// outer one for kNoCode. A legacy file that is written has sections that its input lacks: those
  /// are named, too.
  void ReportIn(FourCharCode section, LossReason reason, std::string_view detail);

 private:
  using TRange = std::pair<std::uint64_t, std::uint64_t>;  ///< Offset and end.
  struct TSection {
    FourCharCode code;
    std::uint32_t offset;
    std::uint32_t length;
  };
  /// The sections of an action's record.
  struct TRecord {
    std::uint32_t offset;  ///< Of its header.
    std::size_t first;     ///< In `sections_`.
    std::size_t count;
  };
  void Send(LossReason reason, std::string_view detail, TLoss loss);
  [[nodiscard]] ByteView BytesOf(std::uint64_t offset, std::uint64_t length) const;
  void BeginRecord(const TRecordHeader& header);
  /// Adds the action to an access for the observer. Access covers its range, too.
  void Notify(TAccess access);
  void Access(const TAccess& access);
  /// The last section of this code in the record that is being written; null if there is none.
  const TSection* FindSection(FourCharCode code);

  TLossObserver& observer_;
  std::string action_;
  std::uint32_t count_ = 0;

  ByteView image_;
  bool is_in_action_ = false;
  std::vector<TRange> covered_;
  std::vector<TSection> file_sections_;  ///< Of the file's own record.
  std::vector<TSection> sections_;       ///< Of all actions.
  std::vector<TRecord> records_;
  /// The last section of each code that was read into a field: of the file and of an action.
  std::vector<TSection> file_fields_;
  std::vector<TSection> fields_;
  std::vector<TLoss> pending_;
  std::size_t first_pending_ = 0;  ///< Of the current record.

  std::span<const TSection> written_;  ///< The sections of the record that is being written.
  bool is_legacy_target_ = false;
  FourCharCode outer_section_ = kNoCode;
  const TSection* found_ = nullptr;  ///< The section that was looked for last.

  TDocumentPlaces places_;
  dom::Element element_;
};

}  // namespace zaf
