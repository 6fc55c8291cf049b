#pragma once

#include "actions/TTableSpecification.h"

namespace zaf {

/// The for action: repeats its children while a variable runs from one value to another. Read from
/// XML, a direction that is neither "Up" nor "Down" is kMalformed.
class TForSpecification final : public TTableSpecification<TForSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("forl");
  static constexpr std::string_view kElement = "ForAction";
  static constexpr std::string_view kLabel = "[For Loop Action] ";
  static std::span<const TProperty> Properties();

 private:
  CText start_;
  CText increment_;
  std::int32_t direction_ = 1;  ///< Greater than 0: up.
  CText end_;
  CText variable_;
};

}  // namespace zaf
