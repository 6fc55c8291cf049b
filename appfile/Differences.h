#pragma once

#include <cstdint>

#include "appfile/TApplication.h"
#include "appfile/TDifference.h"

namespace zaf {

/// Which differences are found.
enum class DifferenceScope : std::uint8_t {
  kXmlForm,     ///< Those that the XML form shows.
  kCompared,    ///< Those that TApplication::IsEqual finds, also in what has no XML form.
  kEverything,  ///< Those, and differences of names and of what is only carried.
};

/// Reports in what two applications differ: first what applies to all of each, then action by
/// action in the order of the tree of `one`, actions that are only in `two` after the ones that
/// they follow there. A difference that the XML form does not show has the code of its section.
/// Actions of one name are the same action, of several those below the same parent first. Throws
/// std::bad_alloc.
void FindDifferences(const TApplication& one, const TApplication& two, DifferenceScope scope,
                     TDifferenceObserver& observer);

}  // namespace zaf
