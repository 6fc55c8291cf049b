#pragma once

#include <array>

#include "actions/TTableSpecification.h"
#include "foundation/CTextPtrArray.h"

namespace zaf {

/// Runs a Java class or bean on a Java server. Owns its texts.
class TJavaQuerySpecification final
    : public TTableSpecification<TJavaQuerySpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("jvvt");
  static constexpr std::string_view kElement = "JavaAction";
  static constexpr std::string_view kLabel = "[Java External Action] ";
  static std::span<const TProperty> Properties();
  static constexpr std::array<FourCharCode, 6> LegacyOrder() {
    return {kNoCode, Code("name"), Code("type"), Code("host"), Code("port"), Code("argu")};
  }

 private:
  CText class_name_;
  FourCharCode kind_ = kNoCode;  ///< "bean"; any other value is a class.
  CText server_;
  CText port_;
  CTextPtrArray arguments_;
};

}  // namespace zaf
