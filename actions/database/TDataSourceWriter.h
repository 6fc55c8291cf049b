#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string_view>

#include "dom/dom.h"
#include "fields/TXmlContext.h"
#include "foundation/Status.h"

namespace zaf {

/// The ID of a `DataSource` element: "DataSource." and the number of preceding ones.
class TDataSourceId {
 public:
  explicit TDataSourceId(std::uint32_t number);

  [[nodiscard]] std::string_view View() const { return {text_.data(), size_}; }

 private:
  std::array<char, 24> text_;
  std::size_t size_;
};

/// Writes the data sources of an application and of its actions into the `DataSources` element of a
/// document. Data sources of actions with equal content share one element, and equal texts are
/// enciphered once. Refers to the document and to the texts of the actions, which outlive it.
class TDataSourceWriter {
 public:
  /// The content of an element: the texts of the data source, the user and password in clear and
  /// the keyword of the kind. The texts that differ most come first, which makes comparing short.
  using TContent = std::array<std::string_view, 7>;

  /// Sets the parent of the elements, before the first one is appended.
  void SetList(dom::Element list) { list_ = list; }

  /// Appends an element, with its ID. It is never shared.
  dom::Element Append();

  /// Returns a new element to fill with this content, or a null one if an equal one exists. Sets
  /// `number` to that of either.
  dom::Element FindOrAppend(const TContent& content, std::uint32_t& number);

  /// Appends an element `name` with the enciphered form of `text` to `parent`.
  void WriteEnciphered(dom::Element parent, std::string_view name, std::string_view text);

 private:
  /// An order in which most contents are compared without reading their texts.
  struct TSizesFirst {
    bool operator()(const TContent& one, const TContent& other) const;
  };

  dom::Element list_;
  std::uint32_t count_ = 0;  ///< Elements in the list.
  std::map<TContent, std::uint32_t, TSizesFirst> numbers_;
  TTextIndex<std::string_view> enciphered_;  ///< By the texts in clear.
};

}  // namespace zaf
