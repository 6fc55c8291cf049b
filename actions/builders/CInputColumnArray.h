#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <vector>

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
/// those inputs that offer a list.
///
/// In a legacy file the items are in sections of their own, before or after those of the columns,
/// and name their columns: an item belongs to every column with a list that it names exactly, in
/// the order of the file. In a document each column has its own items.
class CInputColumnArray : public CDynamicArray {
 public:
  /// `record_size`: bytes of a column record. `name_count`: names in a legacy list item, 1 or 3.
  CInputColumnArray(std::uint32_t record_size, std::size_t name_count);

  [[nodiscard]] const TInputColumn& GetColumn(std::uint32_t index) const {
    return *static_cast<const TInputColumn*>(ElementAt(index));
  }
  /// The list items of a column, until the array changes.
  [[nodiscard]] std::span<const TListItem> GetItems(std::uint32_t column) const;
  /// Adds an item of zeros to a column of a document. Later columns must not have items yet. Null
  /// when memory runs out.
  TListItem* AppendItem(std::uint32_t column);

  /// Returns an empty list for legacy records of items.
  [[nodiscard]] CDynamicArray MakeItemRecords() const;
  /// Adds the items of legacy records. Throws std::bad_alloc.
  void AddItems(const CDynamicArray& records);
  /// Appends the items of all columns to `records`. A legacy file has one list of items for all
  /// columns with the same names: that of the first of them that has any. Throws std::bad_alloc;
  /// also returns false when memory runs out.
  bool AppendItemRecords(CDynamicArray& records) const;
  /// How many columns have other items when they are read from those records. Throws
  /// std::bad_alloc.
  [[nodiscard]] std::size_t CountUnwrittenLists() const;
  /// Finishes the items of a legacy record: charges an item as a record of `file` once more for
  /// each column that it belongs to, and reports items without a column, as of the section `code`.
  /// kMalformed when they are too many for the file's size.
  Status FinishItems(TDataFile& file, FourCharCode code, TLossReporter* losses) const;

  [[nodiscard]] bool HasEqualItems(const CInputColumnArray& other) const;

 private:
  /// The items of one column: a part of `items_`.
  struct TRun {
    std::uint32_t first;
    std::uint32_t count;
  };
  /// The owner, the table and the column, padded with zeros. In records with fewer names the first
  /// ones are empty.
  using TNames = std::array<TFixedText<128>, 3>;
  struct TNamesLess {
    bool operator()(const TNames& one, const TNames& two) const;
  };

  [[nodiscard]] TNames NamesOf(const TBuilderColumn& column) const;
  [[nodiscard]] std::span<const TListItem> FindSharedItems(std::uint32_t column) const;

  std::size_t name_count_;
  TRecordArray<TListItem> items_;  ///< Read from a document.
  TRecordArray<TRun> runs_;        ///< By column; columns after its end have no such items.
  std::map<TNames, std::vector<TListItem>, TNamesLess> shared_items_;  ///< Read from legacy files.
};

/// The columns of one page: their records, and the number of names in its legacy list items.
template <class Column, std::size_t kNames>
class TInputColumnArray final : public CInputColumnArray {
 public:
  static constexpr std::size_t kNameCount = kNames;

  TInputColumnArray() : CInputColumnArray(sizeof(Column), kNames) {}
};

}  // namespace zaf
