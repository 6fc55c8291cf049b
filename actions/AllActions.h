#pragma once

#include "actions/TQuerySpecification.h"
#include "actions/builders/TInsertGroupSpecification.h"
#include "actions/builders/TSearchGroupSpecification.h"
#include "actions/database/TCustomSpecification.h"
#include "actions/database/TDeleteSpecification.h"
#include "actions/database/TInsertSpecification.h"
#include "actions/database/TSearchSpecification.h"
#include "actions/database/TTransCloseSpecification.h"
#include "actions/database/TTransOpenSpecification.h"
#include "actions/database/TUpdateSpecification.h"
#include "actions/flow/TAssignSpecification.h"
#include "actions/flow/TBranchFalseSpecification.h"
#include "actions/flow/TBranchSpecification.h"
#include "actions/flow/TBranchTrueSpecification.h"
#include "actions/flow/TBreakSpecification.h"
#include "actions/flow/TContainerSpecification.h"
#include "actions/flow/TControlFlowSpecification.h"
#include "actions/flow/TElseSpecification.h"
#include "actions/flow/TElseifSpecification.h"
#include "actions/flow/TForSpecification.h"
#include "actions/flow/TGroupSpecification.h"
#include "actions/flow/TIfSpecification.h"
#include "actions/flow/TNullSpecification.h"
#include "actions/flow/TStopSpecification.h"
#include "actions/flow/TWhileSpecification.h"
#include "actions/services/TCallMethodSpecification.h"
#include "actions/services/TCreateObjectSpecification.h"
#include "actions/services/TEmailSpecification.h"
#include "actions/services/TFileQuerySpecification.h"
#include "actions/services/TJavaQuerySpecification.h"
#include "actions/services/TNTQuerySpecification.h"
#include "actions/services/TObjectsLoopSpecification.h"
#include "actions/services/TPresentationSpecification.h"
#include "actions/services/TScriptSpecification.h"
#include "actions/services/TUnixQuerySpecification.h"

namespace zaf {

/// Every class of action, once, as the arguments of `List`. If classes share a type code or an
/// element, the first one is created for it.
template <template <class...> class List>
using TAllActions =
    List<TNullSpecification, TQuerySpecification, TContainerSpecification, TSearchSpecification,
         TInsertSpecification, TUpdateSpecification, TDeleteSpecification, TCustomSpecification,
         TTransOpenSpecification, TTransCloseSpecification, TSearchGroupSpecification,
         TInsertGroupSpecification, TIfSpecification, TElseifSpecification, TElseSpecification,
         TWhileSpecification, TForSpecification, TBreakSpecification, TBranchSpecification,
         TGroupSpecification, TStopSpecification, TControlFlowSpecification,
         TBranchTrueSpecification, TBranchFalseSpecification, TAssignSpecification,
         TEmailSpecification, TFileQuerySpecification, TScriptSpecification,
         TJavaQuerySpecification, TCreateObjectSpecification, TCallMethodSpecification,
         TObjectsLoopSpecification, TPresentationSpecification, TUnixQuerySpecification,
         TNTQuerySpecification>;

}  // namespace zaf
