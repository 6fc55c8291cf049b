#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "dom/ParseReport.h"

namespace zaf {

/// A place in a document: line and column, in characters, from 1; 0: unknown.
struct TDocumentPlace {
  std::uint32_t line = 0;
  std::uint32_t column = 0;
};

/// Finds the places of names of a document. Keeps places at equal distances on the way, so that any
/// number of searches takes time linear in the document's size and their number.
class TDocumentPlaces {
 public:
  TDocumentPlaces() = default;
  /// For a document that was parsed with this report; its text outlives the places.
  explicit TDocumentPlaces(const dom::ParseReport& report)
      : text_(report.text), is_utf8_(report.is_utf8) {}

  [[nodiscard]] bool IsEmpty() const { return text_.empty(); }
  /// The place of a name of an element or attribute. Unknown unless its characters are in the text:
  /// those that are not ASCII may be copies.
  TDocumentPlace Find(std::string_view name);

 private:
  struct TMark {
    std::size_t offset = 0;
    TDocumentPlace place{1, 1};
  };

  [[nodiscard]] TMark Advance(TMark mark, std::size_t to) const;

  std::string_view text_;
  bool is_utf8_ = true;
  std::vector<TMark> marks_{1};
};

}  // namespace zaf
