#pragma once

#include "foundation/CText.h"

namespace zaf {

/// A text that holds a cookie. Adds nothing to CText.
class CCookie : public CText {
 public:
  using CText::CText;
  using CText::operator=;
};

}  // namespace zaf
