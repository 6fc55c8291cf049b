#pragma once

#include <cstdint>

#include "appfile/TApplication.h"
#include "appfile/TDifference.h"

namespace zaf {

/// The set of differences to report.
enum class DifferenceScope : std::uint8_t {
  kXmlForm,     ///< Those visible in the XML form.
  kCompared,    ///< Those that TApplication::IsEqual finds, including fields without XML form.
  kEverything,  ///< Also differences of names and of fields that are only carried.
};

/// Reports the differences between two applications: first those of the applications as a whole,
/// then those of each action in the order of the tree of `one`; actions that are only in `two`
/// follow the actions that they follow there. A difference that is not visible in the XML form has
/// the code of its section. Actions of the same name correspond to each other; of several, first
/// those below the same parent. Throws std::bad_alloc.
void FindDifferences(const TApplication& one, const TApplication& two, DifferenceScope scope,
                     TDifferenceObserver& observer);

}  // namespace zaf
