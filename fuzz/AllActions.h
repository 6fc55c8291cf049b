#pragma once

#include "actions/TAssignSpecification.h"
#include "actions/TBranchFalseSpecification.h"
#include "actions/TBranchSpecification.h"
#include "actions/TBranchTrueSpecification.h"
#include "actions/TBreakSpecification.h"
#include "actions/TCallMethodSpecification.h"
#include "actions/TContainerSpecification.h"
#include "actions/TControlFlowSpecification.h"
#include "actions/TCreateObjectSpecification.h"
#include "actions/TCustomSpecification.h"
#include "actions/TDeleteSpecification.h"
#include "actions/TElseSpecification.h"
#include "actions/TElseifSpecification.h"
#include "actions/TEmailSpecification.h"
#include "actions/TFileQuerySpecification.h"
#include "actions/TForSpecification.h"
#include "actions/TGroupSpecification.h"
#include "actions/TIfSpecification.h"
#include "actions/TInsertGroupSpecification.h"
#include "actions/TInsertSpecification.h"
#include "actions/TJavaQuerySpecification.h"
#include "actions/TNTQuerySpecification.h"
#include "actions/TNullSpecification.h"
#include "actions/TObjectsLoopSpecification.h"
#include "actions/TPresentationSpecification.h"
#include "actions/TQuerySpecification.h"
#include "actions/TScriptSpecification.h"
#include "actions/TSearchGroupSpecification.h"
#include "actions/TSearchSpecification.h"
#include "actions/TStopSpecification.h"
#include "actions/TTransCloseSpecification.h"
#include "actions/TTransOpenSpecification.h"
#include "actions/TUnixQuerySpecification.h"
#include "actions/TUpdateSpecification.h"
#include "actions/TWhileSpecification.h"

namespace zaf {

/// Every class of action, as arguments of `List`. The classes themselves tell their type codes and
/// their rows; this is where a program that walks them all finds them.
template <template <class...> class List>
using TAllActions =
    List<TQuerySpecification, TContainerSpecification, TNullSpecification, TSearchSpecification,
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
