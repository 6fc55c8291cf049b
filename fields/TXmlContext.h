#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "dom/dom.h"
#include "fields/TLossReporter.h"
#include "foundation/Status.h"

namespace zaf {

/// An order of texts that compares their sizes first, since most keys differ in them.
struct TSizeFirst {
  bool operator()(std::string_view one, std::string_view other) const {
    return one.size() != other.size() ? one.size() < other.size() : one < other;
  }
};

/// A dictionary whose keys are texts that outlive it. Ordered rather than hashed, so that no choice
/// of keys degrades it.
template <class Value>
using TTextIndex = std::map<std::string_view, Value, TSizeFirst>;

class TDataSourceIndex;
class TDataSourceWriter;

/// Maps IDs to the output blocks of a document. Of several with one ID the first counts. The pieces
/// of a block are joined once, when it is indexed. Refers to the document, which outlives it and
/// owns the texts.
class TOutputIndex {
 public:
  /// Indexes the `Output` elements in `outputs`.
  explicit TOutputIndex(dom::Element outputs);

  /// The text of the output with this ID; null if not found.
  [[nodiscard]] const std::string_view* Find(std::string_view id) const;
  /// Marks the elements that no reference used as unread, so that they are reported.
  void MarkUnused() const;

 private:
  struct TEntry {
    dom::Element element;
    std::string_view text;
    mutable bool was_asked_for = false;
  };
  TTextIndex<TEntry> entries_;
};

/// The state that the actions of one application share while they are written to a document. Refers
/// to the application and the document, which outlive it.
struct TXmlWriteContext {
  dom::Element actions;             ///< `Actions`, the parent of the actions' elements.
  dom::Element outputs;             ///< `Outputs`, the parent of all output blocks.
  TDataSourceWriter& data_sources;  ///< The data sources of the application and of all actions.
  /// A buffer for one formatted value.
  using TScratch = std::array<char, 16>;
  TScratch scratch{};
  TLossReporter* losses = nullptr;  ///< Null without an observer.
};

/// Limits the text that the actions of a document copy from elements to which they refer. Without
/// a limit, a small document could refer to a long text any number of times.
class TReferenceBudget {
 public:
  /// Allows 32 times `document_size`, in bytes, and at least 4 MiB.
  explicit TReferenceBudget(std::size_t document_size);

  /// Takes `bytes` from the budget; kMalformed once it is exhausted, and ever after.
  Status Charge(std::size_t bytes);

 private:
  std::uint64_t left_;
};

/// The state that the actions share while they are read from a document, which outlives it.
struct TXmlReadContext {
  TOutputIndex outputs;
  TDataSourceIndex& data_sources;
  TReferenceBudget& references;
  /// A buffer for joining the pieces of one field's text.
  mutable std::string joined = {};
  TLossReporter* losses = nullptr;  ///< Null without an observer.
};

/// The element that an object's fields are written into.
struct TXmlWriteScope {
  TXmlWriteContext& context;
  dom::Element element;
  std::string_view action_name;  ///< The beginning of the output blocks' IDs.
};

/// The element that an object's fields are read from.
class TXmlReadScope {
 public:
  TXmlReadScope(const TXmlReadContext& shared, dom::Element own)
      : context(shared), element(own), children_(own) {}

  const TXmlReadContext& context;
  const dom::Element element;

  /// The first child element with this name; null if not found. May be called once per name.
  [[nodiscard]] dom::Element FindChild(std::string_view name) const { return children_.Find(name); }
  /// The text of that child, empty if not found; valid until the next text is read.
  [[nodiscard]] std::string_view FindText(std::string_view name) const {
    return children_.FindText(name, context.joined);
  }

 private:
  mutable dom::ChildFinder children_;
};

}  // namespace zaf
