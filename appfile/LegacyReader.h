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

/// Reads a legacy file, opened for reading, into an empty application. Stops at the first failure
/// and returns its status; what was loaded before is kept. kUnsupportedFormat: the format number is
/// not a known version. kRunOnlyNotAllowed: the file is run-only and `run_only` refuses that.
/// kMalformed: the section map is incomplete, an action's parent is not found, a section is
/// inconsistent, or the file requires more work than its size allows. Other statuses are the data
/// file's. A failed load sets in `place` what is known of the place of the failure. `progress` and
/// `losses` may be null.
Status ReadLegacyApplication(TDataFile& file, const TQuerySpecificationServer& server,
                             RunOnlyFiles run_only, TApplication& application, TErrorPlace& place,
                             TLoadProgress* progress, TLossReporter* losses);

}  // namespace zaf
