#include "appfile/TQuerySpecificationServer.h"

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
namespace {

struct TActionClass {
  FourCharCode type;
  std::string_view element;
  std::unique_ptr<TQuerySpecification> (*create)();
};

template <class Action>
std::unique_ptr<TQuerySpecification> Create() {
  return std::make_unique<Action>();
}

/// An action class under its type code and its element, or another element that it writes.
template <class Action>
constexpr TActionClass Class(std::string_view element = Action::kElement,
                             FourCharCode type = Action::kTypeCode) {
  return {type, element, &Create<Action>};
}

/// The one table of action classes. Of several rows with one type code or one element the first
/// counts: an element that many classes write belongs to the results action.
constexpr TActionClass kActionClasses[] = {
    Class<TQuerySpecification>(TQuerySpecification::kElement, Code("glob")),
    Class<TContainerSpecification>(),
    Class<TNullSpecification>(),
    Class<TSearchSpecification>(),
    Class<TInsertSpecification>(),
    Class<TUpdateSpecification>(),
    Class<TDeleteSpecification>(),
    Class<TCustomSpecification>(),
    Class<TTransOpenSpecification>(),
    Class<TTransCloseSpecification>(),
    Class<TSearchGroupSpecification>(),
    Class<TInsertGroupSpecification>(),
    Class<TIfSpecification>(),
    Class<TElseifSpecification>(),
    Class<TElseSpecification>(),
    Class<TWhileSpecification>(),
    Class<TForSpecification>(),
    Class<TBreakSpecification>(),
    Class<TBranchSpecification>(),
    Class<TGroupSpecification>(),
    Class<TStopSpecification>(),
    Class<TControlFlowSpecification>(),
    Class<TBranchTrueSpecification>(),
    Class<TBranchFalseSpecification>(),
    Class<TAssignSpecification>(),
    Class<TEmailSpecification>(),
    Class<TFileQuerySpecification>(),
    Class<TScriptSpecification>(),
    Class<TJavaQuerySpecification>(),
    Class<TCreateObjectSpecification>(),
    Class<TCallMethodSpecification>(),
    Class<TObjectsLoopSpecification>(),
    Class<TPresentationSpecification>(),
    Class<TUnixQuerySpecification>("AppleEventAction"),
    Class<TUnixQuerySpecification>("CommandLineAction"),
    Class<TNTQuerySpecification>("ExternalDLLAction"),
};

}  // namespace

std::unique_ptr<TQuerySpecification> TQuerySpecificationServer::CreateByType(
    FourCharCode type) const {
  for (const TActionClass& known : kActionClasses)
    if (known.type == type) return known.create();
  return std::make_unique<TQuerySpecification>();
}

std::unique_ptr<TQuerySpecification> TQuerySpecificationServer::CreateByElement(
    std::string_view element) const {
  for (const TActionClass& known : kActionClasses)
    if (known.element == element) return known.create();
  return nullptr;
}

}  // namespace zaf
