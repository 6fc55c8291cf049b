#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dom/dom.h"

namespace zaf {

/// A text as it is read from a document in which it was written: with LF for CR and CR LF.
std::string WithReadLineEnds(std::string_view text);

/// Whether the children of an element of this name are the items of a list.
[[nodiscard]] bool IsListElement(std::string_view name);
/// Whether elements of this name are the items of a list that has no element of its own.
[[nodiscard]] bool IsItemElement(std::string_view name);

/// Compares elements of two documents as they are written, and reports each attribute and text that
/// differs by its path from there. Items are compared so that few are reported as added or removed.
/// A reference to an output block is compared as that block's text; IDs and other references are
/// not compared. An element that only one of both has is reported with its text or fields as its
/// value. In texts, but not in attributes, a CR counts as the line feed that it is read as.
class TElementComparison {
 public:
  using TReport = std::function<void(std::string_view path, std::optional<std::string_view> from,
                                     std::optional<std::string_view> to)>;

  explicit TElementComparison(TReport report) : report_(std::move(report)) {}

  /// `path`: of both elements. A null element has nothing.
  void Compare(std::string_view path, dom::Element one, dom::Element two);

 private:
  using TElements = std::vector<dom::Element>;

  // These compare what is at the current path.
  void CompareContent(dom::Element one, dom::Element two);
  void CompareAttributes(dom::Element one, dom::Element two);
  void CompareChildren(dom::Element one, dom::Element two);
  void CompareItems(const TElements& one, const TElements& two);
  void CompareValues(std::optional<std::string_view> from, std::optional<std::string_view> to);

  /// Compares two elements of one name, or one with nothing, below the current path.
  void CompareChild(dom::Element one, dom::Element two);
  /// The same for the items at `index`.
  void CompareItem(dom::Element one, dom::Element two, std::size_t index);
  void CompareFoundElements(dom::Element one, dom::Element two);

  TReport report_;
  std::string path_;
};

}  // namespace zaf
