#include "fields/TReadSections.h"

#include <algorithm>
#include <iterator>

#include "fields/SectionMap.h"

namespace zaf {
namespace {

/// One of 64 bits for a code, by Fibonacci hashing.
std::uint64_t BitOf(FourCharCode code) {
  return std::uint64_t{1} << (static_cast<std::uint32_t>(code) * 0x9E3779B1U >> 26);
}

}  // namespace

TReadSections::TRecord TReadSections::RecordOf(const TRecordHeader& header) const {
  const std::uint64_t map_size = std::uint64_t{header.map_count} * kSectionMapEntrySize;
  return {
      header.offset, {header.map_offset, header.map_offset + map_size}, action_sections_.size()};
}

void TReadSections::BeginAction(const TRecordHeader& header) {
  is_in_action_ = true;
  action_fields_ = 0;
  actions_.push_back(RecordOf(header));
}

bool TReadSections::SetField(FourCharCode field) {
  Current().back().field = field;
  TCodeSet& fields = is_in_action_ ? action_fields_ : file_fields_;
  const TCodeSet known = std::exchange(fields, fields | BitOf(field));
  return known == fields;
}

const TReadSections::TSection* TReadSections::TakeReplaced(FourCharCode field) {
  std::vector<TSection>& sections = Current();
  const std::size_t first = is_in_action_ ? actions_.back().first : 0;
  const auto end = std::reverse_iterator(sections.begin() + static_cast<std::ptrdiff_t>(first));
  const auto earlier =
      std::find_if(std::next(sections.rbegin()), end,
                   [=](const TSection& section) { return section.field == field; });
  if (earlier == end) return nullptr;
  earlier->field = kNoCode;
  return &*earlier;
}

void TReadSections::Cover(std::uint64_t offset, std::uint64_t length) {
  // Consecutive ranges are combined.
  const std::uint64_t end = offset + length;
  TRange* const last = covered_.empty() ? nullptr : &covered_.back();
  if (last != nullptr && offset >= last->first && offset <= last->second)
    last->second = std::max(last->second, end);
  else
    covered_.emplace_back(offset, end);
}

void TReadSections::CoverRecord(const TRecord& record, std::span<const TSection> sections) {
  Cover(record.offset, kRecordHeaderSize);
  for (const TSection& section : sections) Cover(section.offset, section.length);
  Cover(record.map.first, record.map.second - record.map.first);
}

std::vector<TReadSections::TRange> TReadSections::TakeUncovered(std::uint64_t size) {
  // In the order in which files are usually written, so that ranges are combined.
  std::uint32_t number = 0;
  for (const TSection& section : file_sections_) {
    Cover(section.offset, section.length);
    if (section.code != kRecordHeaderCode || number == actions_.size()) continue;
    ++number;
    CoverRecord(actions_[number - 1], OfRecord(number));
  }
  CoverRecord(file_, {});
  std::ranges::sort(covered_);
  covered_.emplace_back(size, size);
  std::vector<TRange> uncovered;
  std::uint64_t end = 0;
  for (const auto& [begin, next] : covered_) {
    const std::uint64_t stop = std::min(begin, size);
    if (stop > end) uncovered.emplace_back(end, stop);
    end = std::max(end, std::min(next, size));
  }
  covered_.clear();
  return uncovered;
}

std::span<const TReadSections::TSection> TReadSections::OfRecord(std::uint32_t number) const {
  if (number == 0) return file_sections_;
  const std::size_t first = actions_[number - 1].first;
  const std::size_t end =
      number == actions_.size() ? action_sections_.size() : actions_[number].first;
  return std::span(action_sections_).subspan(first, end - first);
}

}  // namespace zaf
