#pragma once

#include "actions/database/TInsertSpecification.h"

namespace zaf {

/// The update action: changes the rows of a table that meet the criteria. It has the same fields as
/// an insert action.
class TUpdateSpecification final
    : public TTableSpecification<TUpdateSpecification, TInsertSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("updt");
  static constexpr std::string_view kElement = "UpdateAction";
  static constexpr std::string_view kLabel = "[Update Action] ";
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
