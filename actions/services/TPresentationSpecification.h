#pragma once

#include "actions/TTableSpecification.h"

namespace zaf {

/// Presents a page; its specific fields are not carried.
class TPresentationSpecification final
    : public TTableSpecification<TPresentationSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("pres");
  static constexpr std::string_view kElement = "PresentationAction";
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
