#pragma once

#include <memory>
#include <string_view>

#include "actions/TQuerySpecification.h"
#include "foundation/FourCharCode.h"

namespace zaf {

/// Makes empty actions of the class that a type code or an XML element names.
class TQuerySpecificationServer {
 public:
  /// An action of the class for a record header's type code; the results action for an unknown
  /// code. Never null.
  [[nodiscard]] std::unique_ptr<TQuerySpecification> CreateByType(FourCharCode type) const;

  /// An action of the class that writes this element; null for an unknown element.
  [[nodiscard]] std::unique_ptr<TQuerySpecification> CreateByElement(
      std::string_view element) const;
};

}  // namespace zaf
