#pragma once

#include <cstddef>
#include <span>

#include "appfile/TApplication.h"
#include "appfile/TErrorPlace.h"
#include "appfile/TLoadProgress.h"
#include "appfile/TQuerySpecificationServer.h"
#include "fields/TLossReporter.h"
#include "foundation/Status.h"

namespace zaf {

/// Parses an XML document, in place, and reads it into an empty application. The bytes of `text`
/// are overwritten. kMalformed: `dom::DOMImplementation` refuses the document, its root is neither
/// `ZAF` nor `ZCF`, an action has an unknown element or a keyword that its class refuses, an
/// `ActionRef` names an action that does not exist, or the actions refer to more text than a
/// document of this size can need. kFailure: memory ran out. A failed load sets in `place` what is
/// known of the place of the failure. `progress` and `losses` may be null.
Status ReadXmlDocument(std::span<std::byte> text, const TQuerySpecificationServer& server,
                       TApplication& application, TErrorPlace& place, TLoadProgress* progress,
                       TLossReporter* losses);

}  // namespace zaf
