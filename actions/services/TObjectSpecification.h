#pragma once

#include "actions/TQuerySpecification.h"

namespace zaf {

/// The base of the actions that work on an object.
class TObjectSpecification : public TQuerySpecification {};

}  // namespace zaf
