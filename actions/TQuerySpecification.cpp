#include "actions/TQuerySpecification.h"

#include <algorithm>
#include <array>
#include <string>

#include "fields/OutputCodec.h"
#include "fields/SectionMap.h"
#include "fields/ValueCodecs.h"
#include "foundation/CTextLocal.h"
#include "foundation/Fnv.h"

namespace zaf {
namespace {

constexpr std::size_t kAssignmentNameWidth = 32;
constexpr std::size_t kAssignmentValueWidth = 256;
constexpr std::size_t kLongAssignmentValueWidth = 1024;

constexpr FourCharCode kParent = Code("pare");
/// The order of the base's legacy sections after the parent; kNoCode: the assignments.
constexpr FourCharCode kOrder[] = {Code("none"), Code("rslt"), Code("err "), kNoCode,
                                   Code("cmnt"), Code("push"), Code("expd")};

/// The signature of an action, computed from its type code and its name: 8 lower-case hexadecimal
/// digits.
std::array<char, 8> Sign(FourCharCode type_code, std::string_view name) {
  const std::array<char, 4> code = Characters(type_code);
  const std::uint32_t hash = Fnv1a(name, Fnv1a({code.data(), code.size()}));
  std::array<char, 8> digits;
  for (std::size_t i = 0; i < digits.size(); ++i)
    digits[i] = "0123456789abcdef"[hash >> (28 - 4 * i) & 0xF];
  return digits;
}

}  // namespace

CText TQuerySpecification::*const TQuerySpecification::kPropertyTexts[] = {
    &TQuerySpecification::name_,    &TQuerySpecification::comments_,
    &TQuerySpecification::results_, &TQuerySpecification::no_results_,
    &TQuerySpecification::error_,
};

std::span<const TProperty> TQuerySpecification::Properties() {
  using Action = TQuerySpecification;
  static constexpr TProperty kRows[] = {
      AttributeIfSet<&Action::push_results_>(Code("push"), "PushResults", kPositiveSwitchCodec),
      AttributeIfSet<&Action::is_expanded_>(Code("expd"), "Expanded", kPositiveSwitchCodec),
      ChildIfSet<&Action::comments_>(Code("cmnt"), "Comments"),
      Output<&Action::results_>(Code("rslt"), "ResultsOutput", ".Results", kFedOutputCodec),
      Output<&Action::no_results_>(Code("none"), "NoResultsOutput", ".NoResults", kFedOutputCodec),
      Output<&Action::error_>(Code("err "), "ErrorOutput", ".Error", kFedOutputCodec),
      ByHand<&Action::parent_name_>(kParent),
  };
  return kRows;
}

Conversion TQuerySpecification::ConvertLegacyRecord(FourCharCode, ByteView, std::span<std::byte>) {
  return Conversion::kDropped;
}

Status TQuerySpecification::Clone(std::unique_ptr<TQuerySpecification>& target) const {
  return CloneAction(*this, target);
}

std::uint32_t TQuerySpecification::GetRecordSize() const { return record_size_; }

bool TQuerySpecification::IsEqual(const TQuerySpecification& other) const {
  return HasEqualCommonContent(other);
}

bool TQuerySpecification::HasEqualCommonContent(const TQuerySpecification& other) const {
  const auto same = [](const CText& one, const CText& two) { return one.View() == two.View(); };
  return type_code_ == other.type_code_ && GetRunDifference(other) == 0 &&
         same(results_, other.results_) && same(error_, other.error_) &&
         same(no_results_, other.no_results_) && same(comments_, other.comments_) &&
         push_results_ == other.push_results_ && is_expanded_ == other.is_expanded_;
}

Status TQuerySpecification::ReadLegacy(TDataFile* file, const TRecordHeader& header) {
  if (file == nullptr) return Status::kNoFile;
  return Attempt([&] { return ReadSections(file, header); }, Status::kFailure);
}

Status TQuerySpecification::ReadSections(TDataFile* file, const TRecordHeader& header) {
  format_ = header.format;
  record_size_ += static_cast<std::uint32_t>(header.name.View().size());
  TLossReporter* const losses = header.losses;
  if (losses != nullptr) record_number_ = losses->GetRecordNumber();
  TSectionMap map;
  if (const Status status = map.Open(*file, header); status != Status::kOk) return status;
  if (!map.IsComplete()) {
    if (losses != nullptr) losses->Report(LossReason::kIncompleteMap);
    return Status::kOk;
  }
  TSectionMapEntry entry;
  while (map.Next(entry)) {
    if (losses != nullptr) [[unlikely]]
      losses->BeginSection(entry.code, entry.offset, entry.length);
    const Status status =
        ReadLegacyProperty({file, entry.code, entry.offset, entry.length, this, losses});
    if (status != Status::kOk) {
      file->NoteFailure({entry.code, entry.offset});
      return status;
    }
    record_size_ += entry.length;
  }
  return Status::kOk;
}

Status TQuerySpecification::ReadLegacyProperty(const TLegacySection& section) {
  if (section.file == nullptr) return Status::kNoFile;
  switch (section.code) {
    case Code("assn"):
      return ReadAssignments(section, kAssignmentValueWidth);
    case Code("assx"):
      return ReadAssignments(section, kLongAssignmentValueWidth);
    default:
      break;
  }
  const TCodeIndex* const own = TryGetIndex([this]() -> const TCodeIndex& {
    static const TCodeIndex made(Properties(), this);
    return made;
  });
  if (own == nullptr) return Status::kFailure;
  const TCodeIndex& index = *own;
  const TCodeIndex::TField& field = index.Find(section.code);
  if (field.row != nullptr) return field.Read(this, section);
  if (section.losses != nullptr) section.losses->Report(LossReason::kUnknownSection, section);
  return Status::kOk;
}

/// The long values of "assx" are the assignments of "assn" in full, so an action that has them
/// keeps no others, whatever the order of the sections.
Status TQuerySpecification::ReadAssignments(const TLegacySection& section,
                                            std::size_t value_width) {
  ByteView records;
  if (const Status status = section.View(records); status != Status::kOk) return status;
  const bool is_long = value_width == kLongAssignmentValueWidth;
  if (TByteAccount* const account = section.GetAccount()) account->SetUse(ByteUse::kDropped);
  if (!is_long && has_long_assignments_) return Status::kOk;
  if (is_long && !has_long_assignments_) {
    assignments_.DeleteAll();
    if (section.losses != nullptr) section.losses->RetractDropped(Code("assn"));
  }
  has_long_assignments_ = is_long;
  const std::size_t record_size = kAssignmentNameWidth + value_width;
  section.ReportUnread(records.size() - records.size() % record_size);
  if (section.losses != nullptr) section.losses->ReportDropped(section);
  for (; records.size() >= record_size; records = records.subspan(record_size)) {
    const std::string_view record = AsText(records.first(record_size));
    TGlobalAssignment* const assignment = assignments_.Append();
    if (assignment == nullptr) return Status::kFailure;
    assignment->name = UntilNul(record.substr(0, kAssignmentNameWidth));
    assignment->value = UntilNul(record.substr(kAssignmentNameWidth));
  }
  return Status::kOk;
}

Status TQuerySpecification::WriteLegacy(TDataFile& file, std::uint32_t& offset,
                                        TRecordHeader& header) const {
  return Attempt([&] { return WriteSections(file, offset, header); }, Status::kFailure);
}

Status TQuerySpecification::WriteSections(TDataFile& file, std::uint32_t& offset,
                                          TRecordHeader& header) const {
  header.format = kWrittenFormat;
  header.type = type_code_;
  header.name = ToRecordName(name_.View());
  if (header.losses != nullptr && header.name.View().size() < name_.GetCharacterCount())
    header.losses->ReportName(LossReason::kCutName);
  TSectionWriter out(file, offset, header.losses);
  if (const Status status = WriteLegacyProperties(out); status != Status::kOk) return status;
  return out.WriteMap(header.map_offset, header.map_count);
}

Status TQuerySpecification::WriteLegacyProperties(TSectionWriter& out) const {
  const CTextLocal<kRecordNameWidth> parent_name(ToRecordName(GetParentName().View()).View());
  if (!parent_name.IsEmpty()) {
    if (const Status status = out.Write(kParent, parent_name); status != Status::kOk) return status;
  }
  for (const FourCharCode code : kOrder) {
    const Status status =
        code == kNoCode ? WriteAssignments(out) : WriteLegacyRow(Properties(), this, code, out);
    if (status != Status::kOk) return status;
  }
  return Status::kOk;
}

Status TQuerySpecification::WriteAssignments(TSectionWriter& out) const {
  if (assignments_.IsEmpty()) return Status::kOk;
  const Status status = WriteAssignments(Code("assx"), kLongAssignmentValueWidth, out);
  return status == Status::kOk ? WriteAssignments(Code("assn"), kAssignmentValueWidth, out)
                               : status;
}

Status TQuerySpecification::WriteAssignments(FourCharCode code, std::size_t value_width,
                                             TSectionWriter& out) const {
  const auto write = [&] {
    std::string records;
    const auto append = [&](std::string_view text, std::size_t width) {
      const std::size_t kept = text.size() > width ? width - 1 : text.size();
      records.append(text.substr(0, kept)).append(width - kept, '\0');
    };
    for (const TGlobalAssignment& assignment : assignments_) {
      append(assignment.name.View(), kAssignmentNameWidth);
      append(assignment.value.View(), value_width);
    }
    return out.Write(code, AsBytes(records));
  };
  return Attempt(write, Status::kFailure);
}

const CText& TQuerySpecification::GetParentName() const {
  const bool is_below_root = tree_entry_ != nullptr && tree_entry_->parent != nullptr &&
                             tree_entry_->parent != tree_entry_;
  return parent_name_.IsEmpty() && is_below_root ? tree_entry_->parent->action->GetName()
                                                 : parent_name_;
}

const TActionEntry* TQuerySpecification::GetNextInTree() const {
  return tree_entry_ == nullptr ? nullptr : tree_entry_->next_sibling;
}

bool TQuerySpecification::IsLeaf() const {
  return tree_entry_ == nullptr || tree_entry_->first_child == nullptr;
}

void TQuerySpecification::GetDisplayName(CText& name) const {
  name = kLabel;
  name.Append(name_.View());
}

void TQuerySpecification::GetResults(CText& text) const { text = results_; }

std::int32_t TQuerySpecification::GetFirstProperty(std::int32_t& id, std::uint32_t& flags) const {
  id = kFirstPropertyId;
  flags = 0;
  return 0;
}

std::int32_t TQuerySpecification::GetNextProperty(std::int32_t& id, std::uint32_t& flags) const {
  if (!IsProperty(id)) return kUnknownProperty;
  if (id == kLastPropertyId) return kNoMoreProperties;
  ++id;
  flags = 0;
  return 0;
}

bool TQuerySpecification::IsProperty(std::int32_t id) const {
  return id >= kFirstPropertyId && id <= kLastPropertyId;
}

std::int32_t TQuerySpecification::GetProperty(CText& text, std::int32_t id) const {
  if (!TQuerySpecification::IsProperty(id)) return kUnknownProperty;
  text = this->*kPropertyTexts[id - kFirstPropertyId];
  return 0;
}

std::int32_t TQuerySpecification::SetProperty(const char* text, std::int32_t id) {
  if (TQuerySpecification::IsProperty(id) && text != nullptr)
    this->*kPropertyTexts[id - kFirstPropertyId] = text;
  return kUnknownProperty;
}

Status TQuerySpecification::WriteXml(TXmlWriteContext& context, dom::Element element,
                                     dom::Element parent) const {
  const auto write = [&] {
    WriteCommonXml(context, element ? element : parent.appendElement(kElement));
    return Status::kOk;
  };
  return Attempt(write, Status::kFailure);
}

void TQuerySpecification::WriteCommonXml(TXmlWriteContext& context, dom::Element element) const {
  const std::array<char, 8> signature = Sign(type_code_, name_.View());
  element.appendAttribute("ID", name_.View());
  element.appendAttribute("Sig", {signature.data(), signature.size()});
  WriteXmlRows(Properties(), this, {context, element, name_.View()});
}

Status TQuerySpecification::ReadXml(const TXmlReadContext& context, dom::Element element) {
  return Attempt([&] { return ReadCommonXml(context, element); }, Status::kFailure);
}

Status TQuerySpecification::ReadCommonXml(const TXmlReadContext& context, dom::Element element) {
  name_ = element.getAttribute("ID");
  return ReadXmlRows(Properties(), this, {context, element});
}

}  // namespace zaf
