#include "actions/builders/CInputColumnArray.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <string>
#include <string_view>

#include "foundation/Attempt.h"

namespace zaf {
namespace {

/// Copies a name, which may fill its slot, padded with zeros.
void SetName(TFixedText<128>& name, std::string_view text) {
  name = {};
  std::copy(text.begin(), text.end(), name.bytes);
}

bool AreEqual(std::span<const TListItem> one, std::span<const TListItem> two) {
  return std::ranges::equal(one, two, [](const TListItem& a, const TListItem& b) {
    return AreRowsEqual(TListItem::Properties(), &a, &b);
  });
}

}  // namespace

std::span<const TProperty> TInputColumn::Properties() {
  static constexpr TProperty kRows[] = {
      InlinePart<&TInputColumn::column>(),
      Child<&TInputColumn::input>(kNoCode, kInputOptionsElement),
  };
  return kRows;
}

CInputColumnArray::CInputColumnArray(std::uint32_t record_size, std::size_t name_count)
    : CDynamicArray(record_size), name_count_(name_count) {}

std::span<const TListItem> CInputColumnArray::GetItems(std::uint32_t column) const {
  if (column < runs_.GetCount() && runs_[column].count != 0)
    return {items_.begin() + runs_[column].first, runs_[column].count};
  return FindSharedItems(column);
}

std::span<const TListItem> CInputColumnArray::FindSharedItems(std::uint32_t column) const {
  if (shared_items_.empty() || column >= GetCount() || !GetColumn(column).input.HasList())
    return {};
  const auto found = shared_items_.find(NamesOf(GetColumn(column).column));
  if (found == shared_items_.end()) return {};
  return found->second;
}

TListItem* CInputColumnArray::AppendItem(std::uint32_t column) {
  while (runs_.GetCount() <= column) {
    TRun* const run = runs_.Append();
    if (run == nullptr) return nullptr;
    run->first = items_.GetCount();
  }
  TListItem* const item = items_.Append();
  if (item != nullptr) ++runs_[column].count;
  return item;
}

CDynamicArray CInputColumnArray::MakeItemRecords() const {
  return CDynamicArray(
      static_cast<std::uint32_t>(name_count_ * sizeof(TNames::value_type) + sizeof(TListItem)));
}

void CInputColumnArray::AddItems(const CDynamicArray& records) {
  for (std::uint32_t i = 0; i < records.GetCount(); ++i) {
    const auto* name = static_cast<const TNames::value_type*>(records.ElementAt(i));
    TNames names{};
    for (TNames::value_type& own : std::span(names).last(name_count_))
      SetName(own, (name++)->View());
    TListItem item;
    std::memcpy(&item, name, sizeof item);
    shared_items_[names].push_back(item);
  }
}

bool CInputColumnArray::AppendItemRecords(CDynamicArray& records) const {
  std::set<TNames, TNamesLess> written;
  for (std::uint32_t i = 0; i < GetCount(); ++i) {
    const std::span<const TListItem> items = GetItems(i);
    if (items.empty()) continue;
    const TBuilderColumn& column = GetColumn(i).column;
    if (!written.insert(NamesOf(column)).second) continue;
    const TNames names{column.owner, column.table, column.column};
    for (const TListItem& item : items) {
      auto* target = static_cast<TNames::value_type*>(records.ElementAt(records.Add(nullptr)));
      if (target == nullptr) return false;
      for (const TNames::value_type& name : std::span(names).last(name_count_)) *target++ = name;
      std::memcpy(target, &item, sizeof item);
    }
  }
  return true;
}

std::size_t CInputColumnArray::CountUnwrittenLists() const {
  std::map<TNames, std::uint32_t, TNamesLess> first;  // Columns with items.
  for (std::uint32_t i = 0; i < GetCount(); ++i)
    if (!GetItems(i).empty()) first.try_emplace(NamesOf(GetColumn(i).column), i);
  std::size_t count = 0;
  for (std::uint32_t i = 0; i < GetCount(); ++i) {
    if (!GetColumn(i).input.HasList()) continue;
    const auto written = first.find(NamesOf(GetColumn(i).column));
    if (written != first.end() && !AreEqual(GetItems(i), GetItems(written->second))) ++count;
  }
  return count;
}

Status CInputColumnArray::FinishItems(TDataFile& file, FourCharCode code,
                                      TLossReporter* losses) const {
  const auto finish = [&] {
    std::set<const TListItem*> counted;  // Lists of a column, which reading has counted.
    std::uint64_t count = 0;
    for (std::uint32_t i = 0; i < GetCount(); ++i) {
      const std::span<const TListItem> items = FindSharedItems(i);
      if (!counted.insert(items.data()).second) count += items.size();
    }
    if (losses != nullptr) {
      std::size_t others = 0;  // Items that belong to no column.
      for (const auto& [names, items] : shared_items_)
        if (!counted.contains(items.data())) others += items.size();
      if (others > 0)
        losses->ReportIn(code, LossReason::kItemWithoutColumn, std::to_string(others));
    }
    return file.ChargeRecords(count * MakeItemRecords().GetElementSize());
  };
  return Attempt(finish, Status::kFailure);
}

bool CInputColumnArray::HasEqualItems(const CInputColumnArray& other) const {
  const std::uint32_t count = std::max(GetCount(), other.GetCount());
  for (std::uint32_t i = 0; i < count; ++i)
    if (!AreEqual(GetItems(i), other.GetItems(i))) return false;
  return true;
}

CInputColumnArray::TNames CInputColumnArray::NamesOf(const TBuilderColumn& column) const {
  TNames names{};
  const TNames::value_type* const own[] = {&column.owner, &column.table, &column.column};
  for (std::size_t i = names.size() - name_count_; i < names.size(); ++i)
    SetName(names[i], own[i]->View());
  return names;
}

bool CInputColumnArray::TNamesLess::operator()(const TNames& one, const TNames& two) const {
  return std::memcmp(one.data(), two.data(), sizeof one) < 0;
}

}  // namespace zaf
