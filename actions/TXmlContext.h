#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "dom/dom.h"
#include "foundation/Status.h"

namespace zaf {

/// A hash of bytes that differs from process to process, so that no file can be made to collide.
struct TSeededHash {
  std::size_t operator()(std::string_view text) const;
};

/// A dictionary whose keys are texts that belong to somebody else, who outlives it.
template <class Value>
using TTextIndex = std::unordered_map<std::string_view, Value, TSeededHash>;

/// The elements of a document by the value of their `ID` attribute. Of several elements with one
/// ID the first counts. Refers to the document, which outlives it.
class TElementIndex {
 public:
  TElementIndex() = default;
  /// Indexes the child elements of `container` that are named `name`.
  TElementIndex(dom::Element container, std::string_view name);

  /// The element with this ID; a null one when there is none.
  [[nodiscard]] dom::Element Find(std::string_view id) const;

 private:
  TTextIndex<dom::Element> elements_;
};

/// Elements of a list that are found again by a key of their content, so that equal ones are
/// written once. Owns its keys.
class TElementRegistry {
 public:
  /// The element that was remembered under `key`; a null one when there is none.
  [[nodiscard]] dom::Element Find(const std::string& key) const;
  void Remember(std::string key, dom::Element element);

 private:
  struct THash {
    std::size_t operator()(const std::string& key) const { return TSeededHash()(key); }
  };
  std::unordered_map<std::string, dom::Element, THash> elements_;
};

/// What the actions of one application share while they are written into one document. The
/// elements belong to the document, which outlives it.
struct TXmlWriteContext {
  dom::Element actions;       ///< `Actions`: where an action's own element goes.
  dom::Element outputs;       ///< `Outputs`: the output blocks of all actions.
  dom::Element data_sources;  ///< `DataSources`: those of the application and of all actions.
  std::uint32_t data_source_count = 0;   ///< Elements in `data_sources`.
  TElementRegistry action_data_sources;  ///< Those of actions, by their content.
};

/// Appends a `DataSource` element to the document's list and gives it its ID: "DataSource." and the
/// number of those before it.
dom::Element AppendDataSource(TXmlWriteContext& context);

/// Bounds the text that the actions of a document take from elements that they refer to: every
/// reference makes a copy, and a small document may refer to a long text any number of times.
class TReferenceBudget {
 public:
  /// `document_size` in bytes: 64 times as much may be copied, and at least 64 MiB.
  explicit TReferenceBudget(std::size_t document_size);

  /// kMalformed when the limit is passed, and from then on.
  Status Charge(std::size_t bytes);

 private:
  std::uint64_t left_;
};

/// What the actions share while they are read from one document, which outlives it.
struct TXmlReadContext {
  TElementIndex outputs;       ///< `Output` elements by ID.
  TElementIndex data_sources;  ///< `DataSource` elements by ID.
  TReferenceBudget& references;
};

/// The element that an object's fields are written into.
struct TXmlWriteScope {
  TXmlWriteContext& context;
  dom::Element element;
  std::string_view action_name;  ///< The first part of the IDs of output blocks.
};

/// The element that an object's fields are read from.
struct TXmlReadScope {
  const TXmlReadContext& context;
  dom::Element element;
};

}  // namespace zaf
