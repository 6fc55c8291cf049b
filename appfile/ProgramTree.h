#pragma once

#include <span>

#include "appfile/TActionTree.h"
#include "dom/dom.h"
#include "fields/TXmlContext.h"
#include "foundation/Status.h"

namespace zaf {

/// Whether `action` goes on with the if or else-if `before`.
[[nodiscard]] bool IsBranchOf(const TQuerySpecification& action, const TQuerySpecification& before);

/// Writes the elements of all actions into the context's `Actions`, one behind the other in tree
/// order, and for each an `ActionRef` into `program`. The references nest as the actions do, with
/// one exception: an else-if or else that hangs under an if or else-if stands beside it. The root
/// container is not written. Ends at the first action that fails and returns its status.
Status WriteProgram(const TActionTree& tree, dom::Element program, TXmlWriteContext& context);

/// Hangs the adopted entries of a tree that has no root yet as the references in `program` say. An
/// else-if or else right behind an if or else-if hangs under that one. An action is taken by the
/// first reference to its ID that is left; those that none names hang under the root, behind the
/// others. kMalformed for a reference to an action that is not there.
Status ReadProgram(dom::Element program, std::span<TActionEntry* const> entries, TActionTree& tree);

}  // namespace zaf
