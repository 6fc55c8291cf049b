#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "dom/dom.h"
#include "foundation/Status.h"

namespace zaf {

/// A dictionary whose keys are texts that outlive it. Ordered, so that no choice of keys makes it
/// slow.
template <class Value>
using TTextIndex = std::map<std::string_view, Value>;

class TDataSourceIndex;
class TDataSourceWriter;

/// The output blocks of a document by the IDs of their elements. Of several with one ID the first
/// counts. Each block is put together once, however many pieces it has and actions refer to it.
/// Refers to the document, which outlives it and keeps the texts.
class TOutputIndex {
 public:
  /// Indexes the `Output` elements in `outputs`.
  explicit TOutputIndex(dom::Element outputs);

  /// The text of the output with this ID; null when there is none.
  [[nodiscard]] const std::string_view* Find(std::string_view id) const;

 private:
  TTextIndex<std::string_view> texts_;
};

/// What the actions of one application share while they are written into one document. Refers
/// to both, which outlive it.
struct TXmlWriteContext {
  dom::Element actions;             ///< `Actions`: where an action's own element goes.
  dom::Element outputs;             ///< `Outputs`: the output blocks of all actions.
  TDataSourceWriter& data_sources;  ///< The data sources of the application and of all actions.
  /// Holds the spelling of one value that is not stored anywhere else.
  using TScratch = std::array<char, 16>;
  TScratch scratch{};
};

/// Bounds the text that the actions of a document take from elements that they refer to: every
/// reference makes a copy, and a small document may refer to a long text any number of times.
class TReferenceBudget {
 public:
  /// `document_size` in bytes: 32 times as much may be copied, and at least 4 MiB.
  explicit TReferenceBudget(std::size_t document_size);

  /// kMalformed when the limit is passed, and from then on.
  Status Charge(std::size_t bytes);

 private:
  std::uint64_t left_;
};

/// What the actions share while they are read from one document, which outlives it.
struct TXmlReadContext {
  TOutputIndex outputs;
  TDataSourceIndex& data_sources;
  TReferenceBudget& references;
  /// Where the pieces of a field's text are joined; not used beyond that field.
  mutable std::string joined = {};
};

/// The element that an object's fields are written into.
struct TXmlWriteScope {
  TXmlWriteContext& context;
  dom::Element element;
  std::string_view action_name;  ///< The first part of the IDs of output blocks.
};

/// The element that an object's fields are read from.
class TXmlReadScope {
 public:
  TXmlReadScope(const TXmlReadContext& shared, dom::Element own)
      : context(shared), element(own), children_(own) {}

  const TXmlReadContext& context;
  const dom::Element element;

  /// The first child element of that name, a null one when there is none. Each field has a name of
  /// its own and asks once.
  [[nodiscard]] dom::Element FindChild(std::string_view name) const { return children_.Find(name); }
  /// The text of that child, empty when there is none; valid until the next text of the document
  /// is read.
  [[nodiscard]] std::string_view FindText(std::string_view name) const {
    return children_.FindText(name, context.joined);
  }

 private:
  mutable dom::ChildFinder children_;
};

}  // namespace zaf
