#include "actions/builders/CInputColumnArray.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <set>
#include <string_view>
#include <vector>

namespace zaf {
namespace {

using TName = TFixedText<128>;

/// The owner, the table and the column. In records that have fewer names the first are empty. The
/// views refer to the records.
using TKey = std::array<std::string_view, 3>;

/// The last `count` names of a column.
TKey KeyOf(const TBuilderColumn& column, std::size_t count) {
  TKey key{column.owner.View(), column.table.View(), column.column.View()};
  std::fill_n(key.begin(), key.size() - count, std::string_view());
  return key;
}

/// A legacy record: its names, followed by its item.
struct TLegacyItemView {
  TKey key{};
  const TListItem* item;

  TLegacyItemView(const void* record, std::size_t name_count) {
    const auto* name = static_cast<const TName*>(record);
    for (std::size_t i = key.size() - name_count; i < key.size(); ++i) key[i] = (name++)->View();
    item = static_cast<const TListItem*>(static_cast<const void*>(name));
  }
};

}  // namespace

std::span<const TProperty> TInputColumn::Properties() {
  static constexpr TProperty kRows[] = {
      InlinePart<&TInputColumn::column>(),
      Child<&TInputColumn::input>(kNoCode, kInputOptionsElement),
  };
  return kRows;
}

CInputColumnArray::CInputColumnArray(std::uint32_t record_size, std::size_t name_count)
    : CDynamicArray(record_size),
      name_count_(name_count),
      unassigned_(static_cast<std::uint32_t>(name_count * sizeof(TName) + sizeof(TListItem))) {}

std::span<const TListItem> CInputColumnArray::GetItems(std::uint32_t column) const {
  if (column >= runs_.GetCount()) return {};
  const TRun& run = runs_[column];
  return {items_.begin() + run.first, run.count};
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

Status CInputColumnArray::AssignItems(TDataFile& file, TLossReporter* losses) {
  if (unassigned_.IsEmpty()) return Status::kOk;
  // The first column of each key collects the items; the others of that key share its run.
  std::map<TKey, std::uint32_t> index;
  std::vector<std::uint32_t> collectors(GetCount(), kNoIndex);
  for (std::uint32_t i = 0; i < collectors.size(); ++i) {
    if (!GetColumn(i).input.HasList()) continue;
    collectors[i] = index.try_emplace(KeyOf(GetColumn(i).column, name_count_), i).first->second;
  }
  std::vector<std::uint32_t> owners(unassigned_.GetCount(), kNoIndex);
  for (std::uint32_t i = 0; i < owners.size(); ++i) {
    const auto found = index.find(TLegacyItemView(unassigned_.ElementAt(i), name_count_).key);
    if (found != index.end()) owners[i] = found->second;
  }
  const auto dropped = std::count(owners.begin(), owners.end(), kNoIndex);
  if (losses != nullptr && dropped > 0)
    losses->Report(LossReason::kItemWithoutColumn, std::to_string(dropped));
  if (const Status status = MakeRuns(collectors, owners, file); status != Status::kOk)
    return status;
  std::vector<std::uint32_t> ends(collectors.size());
  for (std::uint32_t i = 0; i < ends.size(); ++i) ends[i] = runs_[i].first;
  for (std::uint32_t i = 0; i < owners.size(); ++i) {
    const TLegacyItemView record(unassigned_.ElementAt(i), name_count_);
    if (owners[i] != kNoIndex) items_[ends[owners[i]]++] = *record.item;
  }
  unassigned_.RemoveAll();
  return Status::kOk;
}

Status CInputColumnArray::MakeRuns(std::span<const std::uint32_t> collectors,
                                   std::span<const std::uint32_t> owners, TDataFile& file) {
  std::vector<TRun> runs(collectors.size(), TRun{0, 0});
  for (const std::uint32_t owner : owners)
    if (owner != kNoIndex) ++runs[owner].count;
  std::uint32_t total = 0;
  std::uint64_t shared = 0;
  for (std::uint32_t i = 0; i < runs.size(); ++i) {
    if (collectors[i] == i) {
      runs[i].first = total;
      total += runs[i].count;
    } else if (collectors[i] != kNoIndex) {
      runs[i] = runs[collectors[i]];
      shared += runs[i].count;
    }
  }
  const Status status = file.ChargeRecords(shared * unassigned_.GetElementSize());
  if (status != Status::kOk) return status;
  const auto fill = [](CDynamicArray& array, const void* elements, std::size_t count) {
    const auto size = static_cast<std::uint32_t>(count * array.GetElementSize());
    return array.Set(elements, size).length == size;
  };
  return fill(runs_, runs.data(), runs.size()) && fill(items_, nullptr, total) ? Status::kOk
                                                                               : Status::kFailure;
}

bool CInputColumnArray::AppendLegacyItems(CDynamicArray& records) const {
  std::set<TKey> written;
  for (std::uint32_t i = 0; i < runs_.GetCount(); ++i) {
    const std::span<const TListItem> items = GetItems(i);
    if (items.empty()) continue;
    const TBuilderColumn& column = GetColumn(i).column;
    if (!written.insert(KeyOf(column, name_count_)).second) continue;
    const TName* const names[] = {&column.owner, &column.table, &column.column};
    for (const TListItem& item : items) {
      auto* target = static_cast<TName*>(records.ElementAt(records.Add(nullptr)));
      if (target == nullptr) return false;
      for (const TName* name : std::span(names).last(name_count_)) *target++ = *name;
      std::memcpy(target, &item, sizeof item);
    }
  }
  return true;
}

bool CInputColumnArray::HasEqualItems(const CInputColumnArray& other) const {
  const std::uint32_t count = std::max(runs_.GetCount(), other.runs_.GetCount());
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::span<const TListItem> one = GetItems(i);
    const std::span<const TListItem> two = other.GetItems(i);
    const bool is_equal = std::equal(one.begin(), one.end(), two.begin(), two.end(),
                                     [](const TListItem& a, const TListItem& b) {
                                       return AreRowsEqual(TListItem::Properties(), &a, &b);
                                     });
    if (!is_equal) return false;
  }
  return true;
}

}  // namespace zaf
