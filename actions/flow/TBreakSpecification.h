#pragma once

#include "actions/TTableSpecification.h"

namespace zaf {

/// The break action: leaves a loop.
class TBreakSpecification final
    : public TTableSpecification<TBreakSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("brek");
  static constexpr std::string_view kElement = "BreakAction";
  static constexpr std::string_view kLabel = "[Break Action] ";
  static std::span<const TProperty> Properties();

 private:
  CText loop_label_;  ///< The loop to leave.
};

}  // namespace zaf
