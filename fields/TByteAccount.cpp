#include "fields/TByteAccount.h"

#include <algorithm>
#include <queue>

#include "fields/TProperty.h"
#include "fields/TRecordHeader.h"

namespace zaf {

void TByteAccount::OnAccess(const TAccess& access) {
  switch (access.kind) {
    case AccessKind::kHeader:
      // The header of an action was begun as a section of the file.
      if (sections_.empty() || sections_.back().form != SectionForm::kHeader)
        BeginSection(access, SectionForm::kHeader);
      records_.emplace_back(access.action);
      sections_.back().record = static_cast<std::uint32_t>(records_.size() - 1);
      return;
    case AccessKind::kMap:
      if (access.length > 0) BeginSection(access, SectionForm::kMap);
      return;
    case AccessKind::kSection:
      BeginSection(access, access.section == kRecordHeaderCode && !access.is_in_action
                               ? SectionForm::kHeader
                               : SectionForm::kUnread);
      return;
    case AccessKind::kBeyond:
      return SetUse(access.offset, access.length, ByteUse::kCarried);
    case AccessKind::kField:
      return SetField(*access.row);
  }
}

void TByteAccount::BeginSection(const TAccess& access, SectionForm form) {
  EndSection();
  TSection section;
  section.offset = access.offset;
  section.length = form == SectionForm::kHeader ? kRecordHeaderSize : access.length;
  section.code = form == SectionForm::kHeader ? kRecordHeaderCode
                 : form == SectionForm::kMap  ? Code("smap")
                                              : access.section;
  section.record = access.is_in_action ? static_cast<std::uint32_t>(records_.size() - 1) : 0;
  section.form = form;
  sections_.push_back(section);
  SetUse(form == SectionForm::kUnread ? ByteUse::kCarried : ByteUse::kStructure);
}

void TByteAccount::SetField(const TProperty& row) {
  TSection& section = sections_.back();
  section.field = row.name;
  section.form = row.codec->GetSectionForm();
}

void TByteAccount::DropSection(std::uint64_t offset, FourCharCode code) {
  const std::uint32_t record = sections_.back().record;
  const auto replaced =
      std::find_if(std::next(sections_.rbegin()), sections_.rend(), [=](const TSection& section) {
        return section.record == record && section.offset == offset && section.code == code;
      });
  if (replaced != sections_.rend()) replaced->is_without_use = true;
}

void TByteAccount::DropRecord() {
  for (auto section = sections_.rbegin();
       section != sections_.rend() && section->record == records_.size() - 1; ++section)
    section->is_without_use = true;
}

void TByteAccount::SetUse(ByteUse use) {
  SetUse(sections_.back().offset, sections_.back().length, use);
}

void TByteAccount::SetUse(std::uint64_t offset, std::uint64_t length, ByteUse use) {
  if (length == 0) return;
  const auto end = uses_.lower_bound(offset + length);
  if (end == uses_.end() || end->first != offset + length)
    uses_.emplace_hint(end, offset + length,
                       end == uses_.begin() ? ByteUse::kUnreferenced : std::prev(end)->second);
  const auto begin = uses_.lower_bound(offset);
  uses_.erase(begin, uses_.find(offset + length));
  uses_[offset] = use;
}

void TByteAccount::EndSection() {
  for (auto use = uses_.begin(); use != uses_.end() && std::next(use) != uses_.end(); ++use)
    if (use->second != ByteUse::kUnreferenced)
      ranges_.push_back({use->first, std::next(use)->first, use->second,
                         static_cast<std::uint32_t>(sections_.size() - 1)});
  uses_.clear();
}

std::vector<TByteAccount::TRange> TByteAccount::TakeRanges(std::uint64_t size) {
  EndSection();
  std::vector<TRange> noted = std::move(ranges_);
  for (TRange& range : noted)
    if (range.use == ByteUse::kCarried && sections_[range.section].is_without_use)
      range.use = ByteUse::kDropped;
  std::ranges::stable_sort(noted, {}, &TRange::offset);
  // The range with precedence at a place is on top; ranges that have ended are removed when they
  // get there.
  const auto counts_less = [&](std::size_t one, std::size_t two) {
    return noted[one].use != noted[two].use ? noted[one].use > noted[two].use : one > two;
  };
  std::priority_queue<std::size_t, std::vector<std::size_t>, decltype(counts_less)> open(
      counts_less);
  std::vector<TRange> ranges;
  std::size_t next = 0;
  for (std::uint64_t at = 0; at < size;) {
    for (; next < noted.size() && noted[next].offset <= at; ++next) open.push(next);
    while (!open.empty() && noted[open.top()].end <= at) open.pop();
    TRange range = open.empty() ? TRange{} : noted[open.top()];
    range.offset = at;
    at = std::min(size, next < noted.size() ? noted[next].offset : size);
    if (!open.empty()) at = std::min(at, range.end);
    range.end = at;
    if (!ranges.empty() && ranges.back().use == range.use && ranges.back().section == range.section)
      ranges.back().end = at;
    else
      ranges.push_back(range);
  }
  return ranges;
}

void TRecordUse::Add(const void* begin, std::size_t count) const {
  const auto at = static_cast<std::size_t>(static_cast<const char*>(begin) - record_);
  if (at < size_) account_.SetUse(offset_ + at, std::min(count, size_ - at), ByteUse::kCarried);
}

}  // namespace zaf
