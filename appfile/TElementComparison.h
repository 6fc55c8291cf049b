#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dom/dom.h"

namespace zaf {

/// A text as read back from a document: with LF for CR and CR LF.
std::string WithReadLineEnds(std::string_view text);

/// Whether the children of an element with this name are the items of a list.
[[nodiscard]] bool IsListElement(std::string_view name);
/// Whether elements with this name are the items of a list without an element of its own.
[[nodiscard]] bool IsItemElement(std::string_view name);

/// Compares elements of two documents that were built but not serialised, and reports each
/// attribute and text that differs by its path from there. Items are matched so that few are
/// reported as added or removed. A reference to an output block is compared as that block's text;
/// IDs and other references are not compared. An element that only one of them has is reported with
/// its text or fields as its value. In texts, but not in attributes, a CR counts as the line feed
/// that it is read back as.
class TElementComparison {
 public:
  using TReport = std::function<void(std::string_view path, std::optional<std::string_view> from,
                                     std::optional<std::string_view> to)>;

  explicit TElementComparison(TReport report) : report_(std::move(report)) {}

  /// `path`: that of both elements. A null element has no content.
  void Compare(std::string_view path, dom::Element one, dom::Element two);

 private:
  using TElements = std::vector<dom::Element>;

  // These compare the elements at the current path.
  void CompareContent(dom::Element one, dom::Element two);
  void CompareAttributes(dom::Element one, dom::Element two);
  void CompareChildren(dom::Element one, dom::Element two);
  void CompareItems(const TElements& one, const TElements& two);
  void CompareValues(std::optional<std::string_view> from, std::optional<std::string_view> to);

  /// Compares two elements with one name below the current path; one of them may be null.
  void CompareChild(dom::Element one, dom::Element two);
  /// The same for the items at `index`.
  void CompareItem(dom::Element one, dom::Element two, std::size_t index);
  void CompareFoundElements(dom::Element one, dom::Element two);

  TReport report_;
  std::string path_;
};

}  // namespace zaf
