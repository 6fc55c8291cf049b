#pragma once

#include "actions/TQuerySpecification.h"

namespace zaf {

/// Reports the progress of a load to its caller.
class TLoadProgress {
 public:
  /// Called once for each action, when it has been read.
  virtual void OnAction(const TQuerySpecification& action) = 0;

 protected:
  ~TLoadProgress() = default;
};

}  // namespace zaf
