#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dom/dom.h"
#include "fields/TByteAccount.h"
#include "fields/TDocumentPlaces.h"
#include "fields/TLossObserver.h"
#include "fields/TReadSections.h"
#include "fields/TRecordHeader.h"
#include "foundation/FourCharCode.h"
#include "foundation/TByteReader.h"

namespace zaf {

struct TLegacySection;
struct TProperty;

/// The reason for a loss, in the order of the table of sentences in TLossReporter.cpp.
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
/// writers have a pointer to it, null without an observer. The methods may throw std::bad_alloc.
///
/// A section without XML form is a loss only if an XML document is written, so these losses are
/// kept until ReportPending.
class TLossReporter {
 public:
  /// The observer must outlive the reporter.
  explicit TLossReporter(TLossObserver& observer)
      : observer_(observer), account_(observer.GetAccount()) {}

  // Reading a legacy file.

  /// Begins a file with these bytes, which must not change until EndFile, and its own record.
  [[gnu::noinline]] void BeginFile(ByteView image, const TRecordHeader& header);
  /// Begins the record of an action.
  [[gnu::noinline]] void BeginAction(const TRecordHeader& header);
  /// The number of the record of the current action, from 1.
  [[nodiscard]] std::uint32_t GetRecordNumber() const { return sections_.GetRecordNumber(); }
  /// Continues with the file's own record.
  [[gnu::noinline]] void EndAction();
  /// Begins a section of the current record.
  [[gnu::noinline]] void BeginSection(FourCharCode code, std::uint32_t offset,
                                      std::uint32_t length);
  /// Excludes bytes from the report of unreferenced ones, without an access to them.
  void Cover(std::uint64_t offset, std::uint64_t length) { sections_.Cover(offset, length); }
  /// Ends the file. Reports the bytes that nothing covers and that are not all NUL.
  [[gnu::noinline]] void EndFile();

  /// Notes that the section, which was begun last, is about to be read into the field of `row`.
  /// Reports it if the row has no XML form, and reports an earlier section that it replaces.
  void NoteField(const TProperty& row, const TLegacySection& section);
  /// Notes that the section that was begun last was read by hand into the field of this code.
  /// Reports an earlier section that it replaces, unless the field has the same value.
  void NoteField(FourCharCode field, bool has_same_value);
  /// Reports a section that has no XML form, unless it is all NUL.
  void ReportDropped(const TLegacySection& section);
  /// Reports the sections of the action read last that were read into fields: it has no XML form.
  void ReportDroppedAction(std::string_view name);
  /// Withdraws what ReportDropped reported of the sections of this code in the current record,
  /// because another section holds the same data.
  void RetractDropped(FourCharCode code);
  /// Reports bytes of a section from `used` on, which its reader leaves out, unless they are all
  /// NUL.
  [[gnu::noinline]] void ReportUnread(const TLegacySection& section, std::uint64_t used);

  // Reading a document.

  /// Begins a document that was parsed with this report, whose text must not change meanwhile.
  void BeginDocument(const dom::ParseReport& report) { places_ = TDocumentPlaces(report); }
  /// Sets the element to which the following losses belong.
  void SetElement(dom::Element element) { element_ = element; }
  /// Reports a loss at this element.
  void ReportAt(dom::Element element, LossReason reason, std::string_view detail) {
    SetElement(element);
    Report(reason, detail);
  }
  /// Reports the attributes, elements and texts below `root` that were not read.
  void ReportIgnored(dom::Element root);

  // An application is written.

  /// Sets that it is written as a legacy file.
  void SetLegacyTarget() { is_legacy_target_ = true; }

  /// BeginWriting begins the application itself, the other one an action; `record_number` is that
  /// of its record in the legacy file, 0 for none.
  void BeginWriting();
  void BeginWriting(std::string_view action, std::uint32_t record_number);
  /// Sets the section to which the following losses belong.
  void SetSection(FourCharCode section) { section_ = section; }
  [[nodiscard]] FourCharCode GetSection() const { return section_; }
  /// Reports a loss of the name of the action that is being written.
  void ReportName(LossReason reason);
  /// Reports a number that is written as another one or omitted.
  void ReportValue(const TProperty& row);
  /// Reports the losses that were kept until the application is written as XML.
  void ReportPending();

  // Common to all.

  [[nodiscard]] TByteAccount* GetAccount() const { return account_; }

  /// Sets the action to which the following losses belong.
  void SetAction(std::string_view name) { action_ = name; }
  /// Reports a loss. `detail` replaces the `%` of the sentence.
  void Report(LossReason reason, std::string_view detail = {});
  void Report(LossReason reason, const TLegacySection& section, std::string_view detail = {});
  /// The same for bytes outside of sections.
  void ReportBytes(LossReason reason, std::uint64_t offset, std::uint64_t length);
  /// The same for the last section of this code in the record that is being read or written;
  /// kNoCode means the one that was set. Sections of a legacy file being written that its input
  /// lacks are named, too.
  void ReportIn(FourCharCode section, LossReason reason, std::string_view detail);

 private:
  using TSection = TReadSections::TSection;

  void Send(LossReason reason, std::string_view detail, TLoss&& loss);
  [[nodiscard]] ByteView BytesOf(std::uint64_t offset, std::uint64_t length);
  void BeginRecord(const TRecordHeader& header);
  /// As in TReadSections; enters it in the account, too.
  const TSection* TakeReplaced(FourCharCode field);
  void ReportReplaced(const TSection& earlier);
  [[gnu::noinline]] void EnterInAccount(AccessKind kind, std::uint64_t offset, std::uint64_t length,
                                        FourCharCode section, const TProperty* row = nullptr);
  /// The last section of this code in the record that is being written; null if not found.
  const TSection* FindSection(FourCharCode code);

  TLossObserver& observer_;
  TByteAccount* const account_;
  std::string action_;
  std::uint32_t count_ = 0;

  ByteView image_;
  std::uint64_t examinable_ = 0;  ///< How many bytes of long sections may still be examined.
  TReadSections sections_;
  std::vector<TLoss> pending_;
  std::size_t first_pending_ = 0;  ///< Of the current record.

  std::uint32_t written_record_ = 0;   ///< Number of the action being written; 0: none.
  std::span<const TSection> written_;  ///< The sections of the record that is being written.
  bool is_legacy_target_ = false;
  FourCharCode section_ = kNoCode;   ///< Of what is being written.
  const TSection* found_ = nullptr;  ///< The result of the last search.

  TDocumentPlaces places_;
  dom::Element element_;
};

}  // namespace zaf
