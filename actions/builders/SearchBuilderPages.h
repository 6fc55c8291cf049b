#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "actions/builders/CInputColumnArray.h"
#include "actions/builders/TBuilderColumn.h"
#include "actions/builders/TBuilderJoin.h"
#include "actions/builders/TDisplayOptions.h"
#include "actions/builders/TPageFormat.h"
#include "actions/builders/TSortColumnInfo.h"
#include "fields/TProperty.h"
#include "foundation/CText.h"
#include "foundation/TFixedText.h"
#include "foundation/TLazyRecord.h"
#include "foundation/TRecordArray.h"

// The three pages of a search builder, each with its type of column record. A page is a part of its
// action; it owns its texts and lists.

namespace zaf {

/// A column with an input on the search page.
struct TSearchColumnInfo {
  TInputColumn input;
  TFixedText<12> comparison;

  static std::span<const TProperty> Properties();
};

static_assert(sizeof(TSearchColumnInfo) == 956);

using CSearchColumnInfoArray = TInputColumnArray<TSearchColumnInfo, 3>;

/// The search page: a form for the search criteria.
struct TSearchPage {
  CSearchColumnInfoArray columns;
  TLazyRecord<TPageFormat> format;
  CText header;
  CText footer;
  CText find_title;
  CText reset_title;

  static std::span<const TProperty> Properties();
};

/// A column that the list page shows.
struct TListColumnInfo {
  TBuilderColumn column;
  TListDisplayOptions display;

  static std::span<const TProperty> Properties();
};

static_assert(sizeof(TListColumnInfo) == 696);

using CListColumnInfoArray = TRecordArray<TListColumnInfo>;

/// The list page: the rows found.
struct TListPage {
  CText max_rows;
  bool has_pages = false;  ///< Show `max_rows` rows per page instead of all on one page.
  CListColumnInfoArray columns;
  CSortColumnInfoArray order;
  CJoinInfoArray joins;
  TLazyRecord<TPageFormat> format;
  CText header;
  CText footer;
  CText no_results;

  static std::span<const TProperty> Properties();
};

/// A column that the details page shows for editing.
struct TDetailColumnInfo {
  TInputColumn input;
  TDetailDisplayOptions display;

  static std::span<const TProperty> Properties();
};

static_assert(sizeof(TDetailColumnInfo) == 992);

using CDetailColumnInfoArray = TInputColumnArray<TDetailColumnInfo, 3>;

/// The details page: shows one row, to be changed or deleted.
struct TDetailsPage {
  CDetailColumnInfoArray columns;
  CJoinInfoArray joins;
  TLazyRecord<TPageFormat> format;
  CText header;
  CText footer;
  CText delete_response;
  CText update_response;
  CText save_title;
  CText reset_title;
  CText delete_title;
  CText delete_from;  ///< The table that a row is deleted from.

  static std::span<const TProperty> Properties();
};

}  // namespace zaf
