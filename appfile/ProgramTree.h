#pragma once

#include <span>

#include "appfile/TActionTree.h"
#include "dom/dom.h"
#include "fields/TXmlContext.h"
#include "foundation/Status.h"

namespace zaf {

/// Whether `action` is an else-if or else that continues the if or else-if `before`.
[[nodiscard]] bool IsBranchOf(const TQuerySpecification& action, const TQuerySpecification& before);

/// Writes the elements of all actions into the context's `Actions`, one after another in tree
/// order, and for each an `ActionRef` into `program`. The references are nested like the actions,
/// with one exception: an else-if or else that is a child of an if or else-if becomes its sibling.
/// The root container is not written. Stops at the first action that fails and returns its status.
Status WriteProgram(const TActionTree& tree, dom::Element program, TXmlWriteContext& context);

/// Links the adopted entries of a tree without root according to the references in `program`. An
/// else-if or else right after an if or else-if becomes its child. Each reference takes the first
/// remaining action with its ID; actions without a reference become the last children of the root.
/// kMalformed for a reference to an action that does not exist, which `refused` then is.
Status ReadProgram(dom::Element program, std::span<TActionEntry* const> entries, TActionTree& tree,
                   dom::Element& refused);

}  // namespace zaf
