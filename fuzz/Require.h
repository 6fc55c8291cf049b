#pragma once

#include <cstdio>
#include <cstdlib>

namespace zaf::fuzz {

/// Ends the process with a message if a condition does not hold.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

}  // namespace zaf::fuzz
