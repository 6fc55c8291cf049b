#include "fields/TLossReporter.h"

#include <algorithm>

#include "fields/TProperty.h"
#include "fields/TextTraits.h"

namespace zaf {
namespace {

/// Losses that are reported of one file: a file made for it could have millions.
constexpr std::uint32_t kMostLosses = 10000;
/// Bytes of a section that are examined. Any number of sections may be in one place.
constexpr std::uint64_t kMostExamined = 4096;
constexpr std::string_view kFurtherLosses = "There are more losses, which are not listed";

struct TSentence {
  LossCode code;
  std::string_view text;  ///< `%`: the detail.
};

/// By LossReason.
constexpr TSentence kSentences[] = {
    {LossCode::kSectionUnknown, "The section has a code unknown to its class; it is skipped"},
    {LossCode::kSectionDropped, "The section has no XML form; it is left out of the document"},
    {LossCode::kSectionRepeated,
     "A later section of this code has other content; it replaces this one"},
    {LossCode::kSectionMalformed,
     "The section map has fewer entries than its header counts; no section of the action is read"},
    {LossCode::kSectionMalformed,
     "The section holds fewer items than it counts (%); the others are left out"},
    {LossCode::kSectionMalformed,
     "The section goes on after its value; its last % bytes are left out"},
    {LossCode::kBytesUnreferenced,
     "No header, map or section refers to these bytes; they are left out"},
    {LossCode::kRecordDropped,
     "Records of the list have an unknown size of % bytes; they are left out"},
    {LossCode::kRecordDropped,
     "Records of the list have an unknown size of % bytes; empty ones replace them"},
    {LossCode::kRecordDropped,
     "List items name a column that is not there or has no list; % items are left out"},
    {LossCode::kTextCut, "The text of % is longer than its field; it is cut"},
    {LossCode::kTextCut,
     "A text in a record of the list is longer than its field in the current ones of % bytes; it "
     "is cut"},
    {LossCode::kTextCut,
     "Records of the list are longer than the current ones; each is cut to % bytes"},
    {LossCode::kValueUnknown,
     "The number of % is outside its vocabulary; it is written as another one or left out"},
    {LossCode::kValueUnknown,
     "The text of % is not one that its field can hold; it is read as another one"},
    {LossCode::kCharacterDropped,
     "The text of % has control characters, which XML forbids; they are left out"},
    {LossCode::kCharacterReplaced,
     "The document has % characters above U+00FF; they are read as question marks"},
    {LossCode::kLineEndChanged,
     "The text of % has carriage returns; they will be read back as line feeds"},
    {LossCode::kNodeIgnored, "Nothing refers to the element %; it is not read"},
};

bool IsAllNul(ByteView bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](std::byte b) { return b == std::byte{0}; });
}

}  // namespace

void TLossReporter::BeginFile(ByteView image) { image_ = image; }

void TLossReporter::SetAction(std::string_view name) {
  action_ = name;
  seen_[1].clear();
}

void TLossReporter::EndAction() {
  SetAction({});
  if (account_ != nullptr) account_->EndRecord();
}

void TLossReporter::BeginSection(FourCharCode code, std::uint64_t offset, std::uint64_t length) {
  Cover(offset, length);
  if (account_ != nullptr) account_->BeginSection(code, offset, length);
}

ByteView TLossReporter::BytesOf(std::uint64_t offset, std::uint64_t length) const {
  const std::uint64_t begin = std::min<std::uint64_t>(offset, image_.size());
  const std::uint64_t count = std::min({length, image_.size() - begin, kMostExamined});
  return image_.subspan(static_cast<std::size_t>(begin), static_cast<std::size_t>(count));
}

void TLossReporter::Cover(std::uint64_t offset, std::uint64_t length) {
  const TRange range{offset, offset + length};
  if (covered_.empty() || covered_.back() != range) covered_.push_back(range);
}

void TLossReporter::ReportUnreferenced() {
  std::sort(covered_.begin(), covered_.end());
  covered_.emplace_back(image_.size(), image_.size());
  std::uint64_t end = 0;
  for (const auto& [begin, next] : covered_) {
    const std::uint64_t stop = std::min<std::uint64_t>(begin, image_.size());
    if (stop > end && !IsAllNul(image_.subspan(end, stop - end))) {
      TLoss loss{};
      loss.has_range = true;
      loss.offset = end;
      loss.length = stop - end;
      Send(LossReason::kUnreferencedBytes, {}, std::move(loss));
    }
    end = std::max(end, next);
  }
}

void TLossReporter::NoteField(const TProperty& row, const TLegacySection& section) {
  if (account_ != nullptr)
    account_->SetField(row.name, row.codec->GetSectionForm(), !row.codec->AppendsSections());
  if (row.form == XmlForm::kNone) ReportDropped(section);
  if (row.codec->AppendsSections()) return;
  const TRange range{section.offset, section.length};
  const auto [place, is_new] = seen_[action_.empty() ? 0 : 1].try_emplace(section.code, range);
  if (is_new) return;
  const TRange earlier = std::exchange(place->second, range);
  if (earlier.second == range.second && std::ranges::equal(BytesOf(earlier.first, earlier.second),
                                                           BytesOf(range.first, range.second)))
    return;
  TLegacySection replaced = section;
  replaced.offset = static_cast<std::uint32_t>(earlier.first);
  replaced.length = static_cast<std::uint32_t>(earlier.second);
  Report(LossReason::kRepeatedSection, replaced);
}

void TLossReporter::ReportDropped(const TLegacySection& section) {
  if (account_ != nullptr) account_->SetUse(ByteUse::kDropped);
  if (!IsAllNul(BytesOf(section.offset, section.length)))
    Report(LossReason::kDroppedSection, section);
}

void TLossReporter::ReportUnread(const TLegacySection& section, std::uint64_t used) {
  if (used >= section.length) return;
  if (account_ != nullptr)
    account_->SetUse(section.offset + used, section.length - used, ByteUse::kDropped);
  const ByteView rest = BytesOf(section.offset + used, section.length - used);
  if (!IsAllNul(rest))
    Report(LossReason::kUnreadBytes, section, std::to_string(section.length - used));
}

void TLossReporter::Report(LossReason reason, std::string_view detail, FourCharCode section) {
  TLoss loss{};
  loss.section = section;
  Send(reason, detail, std::move(loss));
}

void TLossReporter::Report(LossReason reason, const TLegacySection& section,
                           std::string_view detail) {
  if (reason == LossReason::kUnknownSection && account_ != nullptr)
    account_->SetUse(ByteUse::kUnknown);
  TLoss loss{};
  loss.section = section.code;
  loss.has_range = true;
  loss.offset = section.offset;
  loss.length = section.length;
  Send(reason, detail, std::move(loss));
}

void TLossReporter::ReportCharacters(std::string_view text, const TProperty& row,
                                     std::string_view action) {
  const std::string_view name = row.detail.empty() || row.code == kNoCode ? row.name : row.detail;
  if (action_ != action) SetAction(action);
  if (std::any_of(text.begin(), text.end(), IsDroppedCharacter))
    Report(LossReason::kDroppedCharacters, name, row.code);
  const bool is_attribute = row.form == XmlForm::kAttribute || row.form == XmlForm::kAttributeIfSet;
  if (!is_attribute && text.find('\r') != std::string_view::npos)
    Report(LossReason::kChangedLineEnds, name, row.code);
}

void TLossReporter::ReportValue(const TProperty& row, std::string_view action) {
  if (action_ != action) SetAction(action);
  Report(LossReason::kUnknownValue, row.name, row.code);
}

void TLossReporter::ReportPending() {
  for (const TLoss& loss : pending_) observer_->OnLoss(loss);
  pending_.clear();
}

void TLossReporter::Send(LossReason reason, std::string_view detail, TLoss loss) {
  if (count_ > kMostLosses) return;
  const TSentence& sentence = kSentences[static_cast<std::size_t>(reason)];
  loss.code = sentence.code;
  loss.text = ++count_ > kMostLosses ? kFurtherLosses : sentence.text;
  if (const std::size_t mark = loss.text.find('%'); mark != std::string::npos)
    loss.text.replace(mark, 1, detail);
  loss.action = action_;
  if (reason == LossReason::kDroppedSection)
    pending_.push_back(std::move(loss));
  else
    observer_->OnLoss(loss);
}

}  // namespace zaf
