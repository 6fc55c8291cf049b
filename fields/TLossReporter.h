#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fields/TByteAccount.h"
#include "fields/TLossObserver.h"
#include "foundation/FourCharCode.h"
#include "foundation/TByteReader.h"

namespace zaf {

struct TLegacySection;
struct TProperty;

/// What happened, in the order of the table of sentences in TLossReporter.cpp.
enum class LossReason : std::uint8_t {
  kUnknownSection,
  kDroppedSection,
  kRepeatedSection,
  kIncompleteMap,
  kShortList,
  kUnreadBytes,
  kUnreferencedBytes,
  kUnknownRecordSize,
  kEmptiedRecord,
  kItemWithoutColumn,
  kCutText,
  kCutRecordText,
  kCutRecord,
  kUnknownValue,
  kUnknownWord,
  kDroppedCharacters,
  kReplacedCharacters,
  kChangedLineEnds,
  kUnusedElement,
};

/// Reports the losses of one file to an observer, each with the action that is being read or
/// written. Readers, codecs and writers have a pointer to it, null when nobody observes.
///
/// A section without XML form is a loss only of an XML document, so those losses are kept until
/// ReportPending.
class TLossReporter {
 public:
  void SetObserver(TLossObserver* observer) { observer_ = observer; }
  /// This object, or null without an observer.
  [[nodiscard]] TLossReporter* IfObserved() { return observer_ == nullptr ? nullptr : this; }

  /// Names the account of a legacy file's bytes, for a file that is observed; null: there is none.
  void SetAccount(TByteAccount* account) { account_ = account; }
  [[nodiscard]] TByteAccount* GetAccount() const { return account_; }

  /// Begins the reading of a legacy file with these bytes, which stay as they are meanwhile.
  void BeginFile(ByteView image);
  /// Sets the action that what follows concerns; an empty name: the file itself.
  void SetAction(std::string_view name);
  /// Ends an action of a legacy file: what follows concerns the file itself.
  void EndAction();
  /// Begins a section of the file or of the action.
  void BeginSection(FourCharCode code, std::uint64_t offset, std::uint64_t length);
  /// Records bytes of the legacy file as read.
  void Cover(std::uint64_t offset, std::uint64_t length);
  /// Reports the bytes that were not covered and are not all NUL.
  void ReportUnreferenced();

  /// Notes a section that is about to be read into the field of `row`. Reports it when the row has
  /// no XML form, and reports the section that it replaces.
  void NoteField(const TProperty& row, const TLegacySection& section);
  /// Reports a section that has no XML form; none that is all NUL.
  void ReportDropped(const TLegacySection& section);
  /// Reports bytes of a section from `used` on, which its reader leaves out, if they are not all
  /// NUL.
  void ReportUnread(const TLegacySection& section, std::uint64_t used);

  /// Reports a loss. `detail` replaces the `%` of the sentence.
  void Report(LossReason reason, std::string_view detail = {}, FourCharCode section = kNoCode);
  void Report(LossReason reason, const TLegacySection& section, std::string_view detail = {});

  /// Reports control characters and line ends of a text that is written to XML. `name` is the
  /// element or attribute.
  void ReportCharacters(std::string_view text, const TProperty& row, std::string_view action);

  /// Reports a number that is written to XML as another one or not at all.
  void ReportValue(const TProperty& row, std::string_view action);

  /// Reports what is lost because the application is written as XML.
  void ReportPending();

 private:
  using TRange = std::pair<std::uint64_t, std::uint64_t>;  ///< Offset and end.

  void Send(LossReason reason, std::string_view detail, TLoss loss);
  [[nodiscard]] ByteView BytesOf(std::uint64_t offset, std::uint64_t length) const;

  TLossObserver* observer_ = nullptr;
  TByteAccount* account_ = nullptr;
  std::string action_;
  ByteView image_;
  std::vector<TRange> covered_;
  /// The last section of each code: of the file and of the current action.
  std::map<FourCharCode, TRange> seen_[2];
  std::vector<TLoss> pending_;
  std::uint32_t count_ = 0;
};

}  // namespace zaf
