#pragma once

#include "actions/TTableSpecification.h"

namespace zaf {

/// The group action: contains related actions.
class TGroupSpecification final
    : public TTableSpecification<TGroupSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("grop");
  static constexpr std::string_view kElement = "GroupAction";
  static std::span<const TProperty> Properties() { return {}; }
};

}  // namespace zaf
