#pragma once

#include <cstdint>

#include "appfile/TApplication.h"
#include "appfile/TDifference.h"

namespace zaf {

enum class DifferenceScope : std::uint8_t {
  kXmlForm,     ///< What the XML form holds.
  kEverything,  ///< Also the sections that have no XML form, and values that it does not
                ///< distinguish.
};

/// Reports in what two applications differ: first what applies to all of each, then action by
/// action in the order of the tree of `one`, actions that are only in `two` after the ones that
/// they follow there. Actions of one name are the same action, of several those below the same
/// parent first. Throws std::bad_alloc.
void FindDifferences(const TApplication& one, const TApplication& two, DifferenceScope scope,
                     TDifferenceObserver& observer);

}  // namespace zaf
