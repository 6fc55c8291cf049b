#include "fields/TLossReporter.h"

#include <algorithm>
#include <utility>

#include "fields/SectionMap.h"
#include "fields/TProperty.h"
#include "fields/TextTraits.h"
#include "foundation/WorkLimit.h"

namespace zaf {
namespace {

/// The maximum number of losses that are reported of one file: a hostile file could have millions.
constexpr std::uint32_t kMostLosses = 10000;
/// The number of bytes of a section that are examined in any case. Of longer sections all bytes are
/// examined until, together, they reach the limit for the file.
constexpr std::uint64_t kAlwaysExamined = 4096;
constexpr std::string_view kFurtherLosses = "There are more losses, which are not listed";

struct TSentence {
  LossCode code;
  std::string_view text;  ///< States the finding, the expectation and the action. `%`: the detail.
};

/// By LossReason.
constexpr TSentence kSentences[] = {
    {LossCode::kSectionUnknown,
     "The section has a code that an action of this type does not have; it is skipped"},
    {LossCode::kSectionDropped,
     "The section is not empty, and XML has no form for it; it is left out of the document"},
    {LossCode::kSectionDropped,
     "The section is not empty, and an action of this kind has no use for it; it is left out of "
     "the document"},
    {LossCode::kSectionRepeated,
     "A later section of the record, for the same field, has other content; that one counts"},
    {LossCode::kSectionMalformed,
     "The section map has fewer entries than its header counts; no section of the action is read"},
    {LossCode::kSectionMalformed,
     "The action has a format that is newer than the known ones; it and all that follows in the "
     "map is left out"},
    {LossCode::kSectionMalformed,
     "The list counts % items, and its section ends before the last; the missing ones are left "
     "out"},
    {LossCode::kSectionMalformed,
     "The section is longer than what belongs in it; its last % bytes are left out"},
    {LossCode::kBytesUnreferenced,
     "The bytes are not NUL, and no header, section map or section covers them; they are left "
     "out"},
    {LossCode::kRecordDropped,
     "The records of the list have % bytes, a size that no version has; they are left out"},
    {LossCode::kRecordDropped,
     "The records of the list have % bytes, a size that no version has; empty ones replace them"},
    {LossCode::kRecordDropped,
     "Items of a list name a column that does not exist or has no list; % items are left out"},
    {LossCode::kRecordDropped,
     "A legacy file has one list of items for all columns of a name, that of the first; those of % "
     "columns are left out"},
    {LossCode::kRecordDropped,
     "A legacy file has no parameters of a mail; % parameters are left out"},
    {LossCode::kTextCut, "The text of % is longer than its field; its end is cut off"},
    {LossCode::kTextCut,
     "The name of the action has more than the 31 characters of a legacy file; its end is cut off"},
    {LossCode::kTextCut,
     "The text has a NUL, at which it ends in a legacy file; the characters from there on are left "
     "out"},
    {LossCode::kTextCut,
     "A text of the list is longer than its field, in the current records of % bytes; its end is "
     "cut off"},
    {LossCode::kTextCut,
     "The records of the list are longer than the current ones of % bytes; their ends are cut off"},
    {LossCode::kValueUnknown,
     "The number of % is none of its vocabulary; another one is written, or none"},
    {LossCode::kValueUnknown,
     "The text of % is none that its field can hold; it is read as another value"},
    {LossCode::kValueUnknown,
     "The type of the action is none that exists; it is read as a results action"},
    {LossCode::kValueUnknown,
     "The text of % is empty, for which a legacy file has no form; it is read back as the default"},
    {LossCode::kValueUnknown,
     "The text has <@APPFILEPATH>/, which is read back from a legacy file without the slash"},
    {LossCode::kValueUnknown,
     "The name of a legacy file decides whether it is a class file (.zcf); that of the output says "
     "otherwise than the input"},
    {LossCode::kSectionDropped,
     "Records of the list have a field that is not empty, and XML has no form for it; it is left "
     "out of the document"},
    {LossCode::kCharacterDropped,
     "The text of % has control characters, which XML forbids; they are left out"},
    {LossCode::kCharacterDropped,
     "The name of the action has control characters, which XML forbids; they are left out"},
    {LossCode::kCharacterReplaced,
     "The document has % characters above U+00FF, which texts cannot hold; they are read as "
     "question marks"},
    {LossCode::kLineEndChanged,
     "The text of % has carriage returns, which XML does not keep; they are read back as line "
     "feeds"},
    {LossCode::kLineEndChanged,
     "The text has carriage returns that are read back from a legacy file with a line feed after "
     "each"},
    {LossCode::kNodeIgnored,
     "The element % is not expected here, or a second one, or nothing refers to it; it is not "
     "read"},
    {LossCode::kNodeIgnored, "The attribute % is not expected here; it is not read"},
    {LossCode::kNodeIgnored, "Text in the element % is not expected; it is not read"},
};

/// Attributes without content of the application, which are written but never read.
constexpr std::pair<std::string_view, std::string_view> kUnreadAttributes[] = {
    {"ZAF", "Version"}, {"ZCF", "Version"}, {"Output", "Type"}};
constexpr std::string_view kSignature = "Sig";
constexpr std::string_view kSelfJoin = "SelfJoin";
/// Its content is not examined: if only a deployment refers to it, it is read in part.
constexpr std::string_view kDataSource = "DataSource";

bool IsAllNul(ByteView bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](std::byte b) { return b == std::byte{0}; });
}

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \t\n\r") == std::string_view::npos;
}

bool IsIgnored(dom::Element element, dom::Attr attribute) {
  const std::string_view name = attribute.getName();
  return !attribute.WasRead() && name != kSignature && name != kSelfJoin &&
         std::ranges::none_of(kUnreadAttributes, [&](const auto& unread) {
           return unread.first == element.getTagName() && unread.second == name;
         });
}

bool IsText(dom::Node node) {
  return node.getNodeType() == dom::NodeType::kText ||
         node.getNodeType() == dom::NodeType::kCDATASection;
}

/// The next node of a walk below `root`; null at the end.
dom::Node Following(dom::Node node, dom::Node root, bool enters) {
  if (enters && node.getFirstChild()) return node.getFirstChild();
  while (!(node == root) && !node.getNextSibling()) node = node.getParentNode();
  return node == root ? dom::Node() : node.getNextSibling();
}

}  // namespace

void TLossReporter::BeginFile(ByteView image, const TRecordHeader& header) {
  image_ = image;
  examinable_ = WorkLimit(image.size());
  sections_.BeginFile(header);
  BeginRecord(header);
}

void TLossReporter::BeginAction(const TRecordHeader& header) {
  SetAction(header.name.View());
  sections_.BeginAction(header);
  BeginRecord(header);
}

void TLossReporter::BeginRecord(const TRecordHeader& header) {
  first_pending_ = pending_.size();
  if (account_ == nullptr) return;
  EnterInAccount(AccessKind::kHeader, header.offset, kRecordHeaderSize, kNoCode);
  EnterInAccount(AccessKind::kMap, header.map_offset,
                 std::uint64_t{header.map_count} * kSectionMapEntrySize, kNoCode);
}

void TLossReporter::EndAction() {
  sections_.EndAction();
  action_.clear();
}

void TLossReporter::BeginSection(FourCharCode code, std::uint32_t offset, std::uint32_t length) {
  sections_.Begin(code, offset, length);
  if (account_ != nullptr) EnterInAccount(AccessKind::kSection, offset, length, code);
}

ByteView TLossReporter::BytesOf(std::uint64_t offset, std::uint64_t length) {
  const std::uint64_t begin = std::min<std::uint64_t>(offset, image_.size());
  std::uint64_t count = std::min(length, image_.size() - begin);
  if (count > kAlwaysExamined) {
    if (count > examinable_) count = kAlwaysExamined;
    examinable_ -= std::min(count, examinable_);
  }
  return image_.subspan(static_cast<std::size_t>(begin), static_cast<std::size_t>(count));
}

void TLossReporter::EnterInAccount(AccessKind kind, std::uint64_t offset, std::uint64_t length,
                                   FourCharCode section, const TProperty* row) {
  account_->OnAccess({kind, offset, length, section, row, action_, sections_.IsInAction()});
}

void TLossReporter::EndFile() {
  for (const auto& [begin, end] : sections_.TakeUncovered(image_.size()))
    if (!IsAllNul(
            image_.subspan(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin))))
      ReportBytes(LossReason::kUnreferencedBytes, begin, end - begin);
  image_ = {};
}

void TLossReporter::NoteField(const TProperty& row, const TLegacySection& section) {
  if (account_ != nullptr)
    EnterInAccount(AccessKind::kField, section.offset, section.length, section.code, &row);
  if (row.form == XmlForm::kNone) ReportDropped(section);
  if (!sections_.SetField(section.code) || row.codec->AppendsSections()) return;
  const TSection* const earlier = TakeReplaced(section.code);
  if (earlier != nullptr && (earlier->length != section.length ||
                             !std::ranges::equal(BytesOf(earlier->offset, earlier->length),
                                                 BytesOf(section.offset, section.length))))
    ReportReplaced(*earlier);
}

void TLossReporter::NoteField(FourCharCode field, bool has_same_value) {
  const TSection* const earlier = sections_.SetField(field) ? TakeReplaced(field) : nullptr;
  if (earlier != nullptr && !has_same_value) ReportReplaced(*earlier);
}

const TReadSections::TSection* TLossReporter::TakeReplaced(FourCharCode field) {
  const TSection* const earlier = sections_.TakeReplaced(field);
  if (earlier != nullptr && account_ != nullptr)
    account_->DropSection(earlier->offset, earlier->code);
  return earlier;
}

void TLossReporter::ReportReplaced(const TSection& earlier) {
  Report(LossReason::kRepeatedSection,
         {.code = earlier.code, .offset = earlier.offset, .length = earlier.length});
}

void TLossReporter::ReportDropped(const TLegacySection& section) {
  if (account_ != nullptr) account_->SetUse(ByteUse::kDropped);
  if (!IsAllNul(BytesOf(section.offset, section.length)))
    Report(LossReason::kDroppedSection, section);
}

void TLossReporter::ReportDroppedAction(std::string_view name) {
  SetAction(name);
  const std::size_t known = pending_.size();
  for (const TSection& field : sections_.OfRecord(sections_.GetRecordNumber())) {
    if (field.field == kNoCode) continue;
    const auto is_known = [&](const TLoss& loss) { return loss.section == field.code; };
    const auto first = pending_.begin() + static_cast<std::ptrdiff_t>(first_pending_);
    if (std::none_of(first, pending_.begin() + static_cast<std::ptrdiff_t>(known), is_known) &&
        !IsAllNul(BytesOf(field.offset, field.length)))
      Report(LossReason::kDroppedSection,
             {.code = field.code, .offset = field.offset, .length = field.length});
  }
  SetAction({});
}

void TLossReporter::RetractDropped(FourCharCode code) {
  const auto first = pending_.begin() + static_cast<std::ptrdiff_t>(first_pending_);
  pending_.erase(std::remove_if(first, pending_.end(),
                                [=](const TLoss& loss) { return loss.section == code; }),
                 pending_.end());
}

void TLossReporter::ReportUnread(const TLegacySection& section, std::uint64_t used) {
  const std::uint64_t end = std::uint64_t{section.offset} + section.length;
  if (used > section.length) {
    sections_.Cover(end, used - section.length);
    if (account_ != nullptr)
      EnterInAccount(AccessKind::kBeyond, end, used - section.length, section.code);
  }
  if (used >= section.length) return;
  if (account_ != nullptr)
    account_->SetUse(section.offset + used, section.length - used, ByteUse::kDropped);
  const ByteView rest = BytesOf(section.offset + used, section.length - used);
  if (!IsAllNul(rest))
    Report(LossReason::kUnreadBytes, section, std::to_string(section.length - used));
}

void TLossReporter::ReportIgnored(dom::Element root) {
  bool enters = true;
  for (dom::Node node = root; node; node = Following(node, root, enters)) {
    enters = true;
    const dom::Element element(node);
    if (!element) {
      const dom::Element parent(node.getParentNode());
      if (IsText(node) && !node.WasRead() && !IsBlank(node.getNodeValue())) {
        SetElement(parent);
        Report(LossReason::kIgnoredText, parent.getTagName());
      }
      continue;
    }
    SetElement(element);
    if (!element.WasRead() && !(node == root)) {
      Report(LossReason::kIgnoredElement, element.getTagName());
      enters = false;
      continue;
    }
    enters = element.getTagName() != kDataSource;
    if (!enters) continue;
    for (const dom::Attr attribute : element.getAttributes())
      if (IsIgnored(element, attribute)) Report(LossReason::kIgnoredAttribute, attribute.getName());
  }
  element_ = {};
}

void TLossReporter::BeginWriting() {
  action_.clear();
  written_record_ = 0;
  written_ = sections_.OfRecord(0);
  section_ = kNoCode;
  found_ = nullptr;
}

void TLossReporter::BeginWriting(std::string_view action, std::uint32_t record_number) {
  BeginWriting();
  SetAction(action);
  written_ = {};
  if (record_number != 0 && record_number <= sections_.GetRecordNumber()) {
    written_record_ = record_number;
    written_ = sections_.OfRecord(record_number);
  }
  if (!is_legacy_target_ && ExamineText(action).has_dropped) ReportName(LossReason::kDroppedInName);
}

void TLossReporter::ReportName(LossReason reason) {
  if (written_record_ == 0) return Report(reason);
  ReportBytes(reason, sections_.OffsetOf(written_record_) + kRecordHeaderSize - kRecordNameWidth,
              kRecordNameWidth);
}

void TLossReporter::ReportValue(const TProperty& row) {
  ReportIn(row.code, LossReason::kUnknownValue, row.name);
}

void TLossReporter::ReportIn(FourCharCode section, LossReason reason, std::string_view detail) {
  if (section == kNoCode) section = section_;
  TLoss loss{};
  if (is_legacy_target_) loss.section = section;
  if (const TSection* const found = FindSection(section); found != nullptr) {
    loss.section = section;
    loss.has_range = true;
    loss.offset = found->offset;
    loss.length = found->length;
  }
  Send(reason, detail, std::move(loss));
}

const TReadSections::TSection* TLossReporter::FindSection(FourCharCode code) {
  if (found_ != nullptr && found_->code == code) return found_;
  const bool is_read = sections_.IsInAction();
  const std::span<const TSection> sections =
      is_read ? sections_.OfRecord(sections_.GetRecordNumber()) : written_;
  const auto last = std::ranges::find(sections.rbegin(), sections.rend(), code, &TSection::code);
  if (last == sections.rend()) return nullptr;
  return is_read ? &*last : found_ = &*last;
}

void TLossReporter::ReportPending() {
  for (TLoss& loss : pending_) observer_.OnLoss(std::move(loss));
  pending_.clear();
}

void TLossReporter::Report(LossReason reason, std::string_view detail) { Send(reason, detail, {}); }

void TLossReporter::Report(LossReason reason, const TLegacySection& section,
                           std::string_view detail) {
  if (account_ != nullptr && reason == LossReason::kUnknownSection)
    account_->SetUse(ByteUse::kUnknown);
  TLoss loss{};
  loss.section = section.code;
  loss.has_range = true;
  loss.offset = section.offset;
  loss.length = section.length;
  Send(reason, detail, std::move(loss));
}

void TLossReporter::ReportBytes(LossReason reason, std::uint64_t offset, std::uint64_t length) {
  TLoss loss{};
  loss.has_range = true;
  loss.offset = offset;
  loss.length = length;
  Send(reason, {}, std::move(loss));
}

void TLossReporter::Send(LossReason reason, std::string_view detail, TLoss&& loss) {
  if (count_ > kMostLosses) return;
  const TSentence& sentence = kSentences[static_cast<std::size_t>(reason)];
  loss.code = sentence.code;
  loss.sentence = ++count_ > kMostLosses ? kFurtherLosses : sentence.text;
  loss.detail = detail;
  loss.action = action_;
  if (!places_.IsEmpty() && element_) {
    const TDocumentPlace place = places_.Find(element_.getTagName());
    loss.line = place.line;
    loss.column = place.column;
  }
  if (reason == LossReason::kDroppedSection)
    pending_.push_back(std::move(loss));
  else
    observer_.OnLoss(std::move(loss));
}

}  // namespace zaf
