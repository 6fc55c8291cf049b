#pragma once

#include <memory>
#include <string_view>

#include "actions/database/TDataSource.h"
#include "dom/dom.h"
#include "fields/TXmlContext.h"
#include "foundation/CCipherText.h"

namespace zaf {

/// The data sources of a document by the IDs of their elements. Of several with one ID the first
/// counts. The second look-up of an element caches its content, since any number of actions may
/// refer to a large one; most elements are looked up once and not cached. Logins, most of which are
/// equal, are deciphered once. Owns its caches; refers to the document, which outlives it.
class TDataSourceIndex {
 public:
  /// Indexes the `DataSource` elements in `data_sources`.
  explicit TDataSourceIndex(dom::Element data_sources);

  /// Reads all but the deployment login into `source`. Without an element of this ID it becomes
  /// empty; so do the texts of `ReadLogin`.
  void Read(const TXmlReadContext& context, std::string_view id, TDataSource& source);
  void ReadLogin(const TXmlReadContext& context, std::string_view id, CText& user_name,
                 CText& password);

  /// Marks the elements that no reference used as unread, so that they are reported.
  void MarkUnused() const;
  /// The clear form of an enciphered text of the document, see CCipherText. Valid as long as the
  /// index.
  [[nodiscard]] std::string_view Decipher(std::string_view text);

 private:
  struct TEntry {
    dom::Element element;
    bool was_asked_for = false;
    std::unique_ptr<TDataSource> kept = nullptr;
  };

  /// The element with this ID, or a null one; sets `kept` to its cached content, if any.
  dom::Element Find(const TXmlReadContext& context, std::string_view id, const TDataSource*& kept);

  TTextIndex<TEntry> entries_;
  TTextIndex<CCipherText> clear_texts_;  ///< By their enciphered forms.
};

}  // namespace zaf
