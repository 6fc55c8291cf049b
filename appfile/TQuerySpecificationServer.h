#pragma once

#include <memory>
#include <string_view>

#include "actions/TQuerySpecification.h"
#include "foundation/FourCharCode.h"
#include "foundation/Status.h"

namespace zaf {

/// Creates empty actions of the class for a type code or an XML element.
class TQuerySpecificationServer {
 public:
  /// Returns an action of the class for a record header's type code; the results action for an
  /// unknown code. Null when memory runs out.
  [[nodiscard]] std::unique_ptr<TQuerySpecification> CreateByType(FourCharCode type) const;

  /// Sets `action` to one of the class for this element. kMalformed for an unknown element,
  /// kFailure when memory runs out; it is null then.
  Status CreateByElement(std::string_view element,
                         std::unique_ptr<TQuerySpecification>& action) const;
};

}  // namespace zaf
