#include "actions/builders/SearchBuilderPages.h"

#include "actions/builders/InputColumnsCodec.h"
#include "fields/ListCodecs.h"
#include "fields/OutputCodec.h"
#include "fields/PartCodec.h"
#include "fields/ValueCodecs.h"

namespace zaf {

std::span<const TProperty> TSearchColumnInfo::Properties() {
  using Column = TSearchColumnInfo;
  static constexpr TProperty kRows[] = {
      InlinePart<&Column::input>(),
      Attribute<&Column::comparison>(kNoCode, "Operator"),
  };
  return kRows;
}

std::span<const TProperty> TSearchPage::Properties() {
  using Page = TSearchPage;
  static constexpr TProperty kRows[] = {
      List<&Page::columns>(Code("scit"), "SearchPageColumns", "SearchPageColumn"),
      ListItems<&Page::columns>(Code("sfvt")),
      Child<&Page::format>(Code("spgf"), "PageFormat"),
      Output<&Page::header>(Code("schd"), "HeaderOutput", ".SearchHeader"),
      Output<&Page::footer>(Code("scft"), "FooterOutput", ".SearchFooter"),
      Child<&Page::find_title>(Code("fbtn"), "FindButtonTitle"),
      Child<&Page::reset_title>(Code("srbn"), "ResetButtonTitle"),
  };
  return kRows;
}

std::span<const TProperty> TListColumnInfo::Properties() {
  using Column = TListColumnInfo;
  static constexpr TProperty kRows[] = {
      InlinePart<&Column::column>(),
      Child<&Column::display>(kNoCode, "DisplayOptions"),
  };
  return kRows;
}

std::span<const TProperty> TListPage::Properties() {
  using Page = TListPage;
  static constexpr TProperty kRows[] = {
      Attribute<&Page::max_rows>(Code("mrow"), "MaxRows"),
      Attribute<&Page::has_pages>(Code("mpgs"), "MultiPage"),
      List<&Page::columns>(Code("lcit"), "ListPageColumns", "ListPageColumn"),
      List<&Page::order>(Code("lsrt"), "OrderColumns", "OrderColumn"),
      List<&Page::joins>(Code("join"), "JoinCriteria", "JoinItem"),
      Child<&Page::format>(Code("lpgf"), "PageFormat"),
      Output<&Page::header>(Code("lchd"), "HeaderOutput", ".ListHeader"),
      Output<&Page::footer>(Code("lcft"), "FooterOutput", ".ListFooter"),
      Output<&Page::no_results>(Code("snre"), "NoResultsOutput", ".ListNoResults"),
  };
  return kRows;
}

std::span<const TProperty> TDetailColumnInfo::Properties() {
  using Column = TDetailColumnInfo;
  static constexpr TProperty kRows[] = {
      InlinePart<&Column::input>(),
      Child<&Column::display>(kNoCode, "DisplayOptions"),
  };
  return kRows;
}

std::span<const TProperty> TDetailsPage::Properties() {
  using Page = TDetailsPage;
  static constexpr TProperty kRows[] = {
      List<&Page::columns>(Code("dcit"), "DetailsPageColumns", "DetailsPageColumn"),
      ListItems<&Page::columns>(Code("dfvt")),
      List<&Page::joins>(Code("dltj"), "JoinCriteria", "JoinItem"),
      Child<&Page::format>(Code("dpgf"), "PageFormat"),
      Output<&Page::header>(Code("dchd"), "HeaderOutput", ".DetailsHeader"),
      Output<&Page::footer>(Code("dcft"), "FooterOutput", ".DetailsFooter"),
      Output<&Page::delete_response>(Code("delh"), "DeleteResponse", ".DetailsDelete"),
      Output<&Page::update_response>(Code("updh"), "UpdateResponse", ".DetailsUpdate"),
      Child<&Page::save_title>(Code("sbtn"), "SaveButtonTitle"),
      Child<&Page::reset_title>(Code("drbn"), "ResetButtonTitle"),
      Child<&Page::delete_title>(Code("dbtn"), "DeleteButtonTitle"),
      Child<&Page::delete_from>(Code("dtbl"), "DeleteFromTable"),
  };
  return kRows;
}

}  // namespace zaf
