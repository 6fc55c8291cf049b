#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "actions/builders/TBuilderColumn.h"
#include "actions/builders/TInputOptions.h"
#include "actions/builders/TListItem.h"
#include "fields/TLossReporter.h"
#include "foundation/CDynamicArray.h"
#include "foundation/Status.h"
#include "foundation/TDataFile.h"
#include "foundation/TRecordArray.h"

namespace zaf {

/// A column of a page with input: the head of the column records of all such pages.
struct TInputColumn {
  TBuilderColumn column;
  TInputOptions input;

  static std::span<const TProperty> Properties();
};

static_assert(sizeof(TInputColumn) == 944);
static_assert(offsetof(TInputColumn, input) == 524);

/// The columns of a page with input, records that begin with a TInputColumn, and the list items of
/// those whose input offers a list.
///
/// In a legacy file the items have sections of their own, in any order with those of the columns,
/// and name the columns that they belong to. They are kept as they are read until `AssignItems`.
class CInputColumnArray : public CDynamicArray {
 public:
  /// `record_size`: bytes of a column record. `name_count`: names in a legacy list item, 1 or 3.
  CInputColumnArray(std::uint32_t record_size, std::size_t name_count);

  [[nodiscard]] const TInputColumn& GetColumn(std::uint32_t index) const {
    return *static_cast<const TInputColumn*>(ElementAt(index));
  }
  /// The list items of a column, until the array changes.
  [[nodiscard]] std::span<const TListItem> GetItems(std::uint32_t column) const;
  /// Adds an item of zeros to a column, of which none behind has items yet; null when memory could
  /// not be had.
  TListItem* AppendItem(std::uint32_t column);

  /// The records of the legacy sections that are not assigned yet.
  [[nodiscard]] CDynamicArray& GetUnassigned() { return unassigned_; }
  [[nodiscard]] const CDynamicArray& GetUnassigned() const { return unassigned_; }
  /// Gives the records read from `file` to every column with a list that they name exactly, in
  /// their order, in time linear in both; others are dropped and reported. A record counts as one
  /// of the file for each column that it is given to: kMalformed when those are too many for the
  /// file's size.
  Status AssignItems(TDataFile& file, TLossReporter* losses);
  /// Appends all assigned items to `records`, as records of a legacy file. There columns of the
  /// same names have the same items: those of the first of them that has any. False when memory
  /// could not be had.
  bool AppendLegacyItems(CDynamicArray& records) const;

  [[nodiscard]] bool HasEqualItems(const CInputColumnArray& other) const;

 private:
  /// The items of one column: a part of `items_`, which columns of the same names share.
  struct TRun {
    std::uint32_t first;
    std::uint32_t count;
  };

  /// Makes a run for each column, with room for the items that it is going to have. `collectors`
  /// has for each column the one whose items it shares, `owners` for each unassigned record the
  /// column that collects it; kNoIndex: none.
  Status MakeRuns(std::span<const std::uint32_t> collectors, std::span<const std::uint32_t> owners,
                  TDataFile& file);

  std::size_t name_count_;
  TRecordArray<TListItem> items_;
  TRecordArray<TRun> runs_;  ///< By column; columns behind its end have no items.
  CDynamicArray unassigned_;
};

/// The columns of one page: their records, and the number of names in its legacy list items.
template <class Column, std::size_t kNames>
class TInputColumnArray final : public CInputColumnArray {
 public:
  using TColumn = Column;
  static constexpr std::size_t kNameCount = kNames;

  TInputColumnArray() : CInputColumnArray(sizeof(Column), kNames) {}
};

}  // namespace zaf
