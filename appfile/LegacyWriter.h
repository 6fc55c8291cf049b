#pragma once

#include "appfile/TApplication.h"
#include "appfile/TErrorPlace.h"
#include "foundation/Status.h"
#include "foundation/TDataFile.h"

namespace zaf {

/// Writes an application in the legacy form into an empty stream that can be read and written. A
/// run-only application is written scrambled. kFailure, with nothing written, when a parent has no
/// name, or when its name, cut to 31 bytes, is also that of another action (case ignored): children
/// name their parents; `place` then names the action. Otherwise returns the data file's first
/// status that is not kOk; the stream's content is undefined then. `losses`, if not null, has
/// observed the application being read.
Status WriteLegacyApplication(const TApplication& application, TDataFile& file, TErrorPlace& place,
                              TLossReporter* losses = nullptr);

}  // namespace zaf
