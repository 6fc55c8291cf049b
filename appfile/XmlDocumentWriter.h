#pragma once

#include "appfile/TApplication.h"
#include "dom/dom.h"
#include "fields/TLossReporter.h"
#include "foundation/Status.h"

namespace zaf {

/// Whether a document marks its application as run-only.
enum class RunOnlyMark : bool { kNone, kWritten };

/// Fills an empty document with an application: declaration, document type, root, and in it the
/// containers with the data sources, the output blocks, the actions and the program, which is the
/// nesting of the actions. Returns the first status of an action that is not kOk; kFailure when the
/// document cannot be built. Losses are reported to `losses` unless that is null.
Status WriteXmlDocument(const TApplication& application, RunOnlyMark mark,
                        const dom::Document& document, TLossReporter* losses = nullptr);

}  // namespace zaf
