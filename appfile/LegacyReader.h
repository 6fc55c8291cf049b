#pragma once

#include "appfile/TApplication.h"
#include "appfile/TErrorPlace.h"
#include "appfile/TLoadProgress.h"
#include "appfile/TQuerySpecificationServer.h"
#include "foundation/Status.h"
#include "foundation/TDataFile.h"

namespace zaf {

/// Whether a run-only file may be loaded.
enum class RunOnlyFiles : bool { kRefused, kAllowed };

/// Reads a legacy file, opened for reading, into an empty application. The load ends at the first
/// thing that fails and returns its status; what was loaded before stays. kUnsupportedFormat: the
/// format number names no known version. kRunOnlyNotAllowed: the file is run-only and none is
/// allowed. kMalformed: the section map is not whole, an action's parent is not found, a section
/// contradicts itself, or the file asks for more work than its size allows. Other statuses are the
/// data file's. A failed load sets in `place` what is known of where it failed. `progress` and
/// `losses` may be null.
Status ReadLegacyApplication(TDataFile& file, const TQuerySpecificationServer& server,
                             RunOnlyFiles run_only, TApplication& application, TErrorPlace& place,
                             TLoadProgress* progress, TLossReporter* losses);

}  // namespace zaf
