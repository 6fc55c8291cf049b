#pragma once

#include <memory>
#include <string_view>

#include "actions/database/TDataSource.h"
#include "dom/dom.h"
#include "fields/TXmlContext.h"
#include "foundation/CCipherText.h"

namespace zaf {

/// The data sources of a document by the IDs of their elements. Of several with one ID the first
/// counts. An element that is asked for a second time is kept as it was read then: any number of
/// actions may share one that is costly to read. Most elements are asked for once, and a copy of
/// those would be of no use. The users and passwords of the elements, most of which have the same
/// ones, are deciphered once. Owns what it keeps; refers to the document, which outlives it.
class TDataSourceIndex {
 public:
  /// Indexes the `DataSource` elements in `data_sources`.
  explicit TDataSourceIndex(dom::Element data_sources);

  /// Reads all but the deployment user and password into `source`. Without an element of this ID
  /// it becomes empty; so do the texts of `ReadLogin`.
  void Read(const TXmlReadContext& context, std::string_view id, TDataSource& source);
  void ReadLogin(const TXmlReadContext& context, std::string_view id, CText& user_name,
                 CText& password);

  /// Marks the elements unread that were not asked for: for those who look for them.
  void MarkUnused() const;
  /// The clear form of an enciphered text of the document, as CCipherText has it. Valid as long as
  /// the index.
  [[nodiscard]] std::string_view Decipher(std::string_view text);

 private:
  struct TEntry {
    dom::Element element;
    bool was_asked_for = false;
    std::unique_ptr<TDataSource> kept = nullptr;
  };

  /// The element of this ID, or a null one; and, in `kept`, what it says where that is kept.
  dom::Element Find(const TXmlReadContext& context, std::string_view id, const TDataSource*& kept);

  TTextIndex<TEntry> entries_;
  TTextIndex<CCipherText> clear_texts_;  ///< By the enciphered ones.
};

}  // namespace zaf
