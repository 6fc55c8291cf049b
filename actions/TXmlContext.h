#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "actions/THashIndex.h"
#include "actions/TSeededHash.h"
#include "dom/dom.h"
#include "foundation/Status.h"

namespace zaf {

/// A dictionary whose keys are texts that belong to somebody else, who outlives it.
template <class Value>
using TTextIndex = std::unordered_map<std::string_view, Value, TSeededHash, std::equal_to<>>;

class TDataSourceIndex;

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

struct TDataSource;

/// Which of the two logins of an action's data source.
enum class Login : std::uint8_t { kDevelopment, kDeployment };

/// What a `DataSource` element of a document was written from.
struct TWrittenDataSource {
  const TDataSource* source = nullptr;
  Login login = Login::kDevelopment;
  std::uint32_t number = 0;  ///< Of the element, in the list.
};

/// A user or password, and its enciphered form in the document.
struct TEncipheredText {
  std::string_view clear;
  std::string_view enciphered;
};

/// What the actions of one application share while they are written into one document. Refers
/// to both, which outlive it. Equal data sources are written, and equal texts enciphered, once.
struct TXmlWriteContext {
  dom::Element actions;       ///< `Actions`: where an action's own element goes.
  dom::Element outputs;       ///< `Outputs`: the output blocks of all actions.
  dom::Element data_sources;  ///< `DataSources`: those of the application and of all actions.
  std::uint32_t data_source_count = 0;                 ///< Elements in `data_sources`.
  THashIndex<TWrittenDataSource> action_data_sources;  ///< Those of actions, by their content.
  THashIndex<TEncipheredText> enciphered_texts;        ///< By the texts in clear.
  /// Room for the spelling of one value that is not stored anywhere.
  using TScratch = std::array<char, 16>;
  TScratch scratch{};
};

/// The ID of a `DataSource` element: "DataSource." and the number of those before it.
class TDataSourceId {
 public:
  explicit TDataSourceId(std::uint32_t number);

  [[nodiscard]] std::string_view View() const { return {text_.data(), size_}; }

 private:
  std::array<char, 24> text_;
  std::size_t size_;
};

/// Appends a `DataSource` element, with its ID, to the document's list.
dom::Element AppendDataSource(TXmlWriteContext& context);

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
