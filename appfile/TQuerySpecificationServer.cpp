#include "appfile/TQuerySpecificationServer.h"

#include "actions/TContainerSpecification.h"

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
constexpr TActionClass Class(FourCharCode type, std::string_view element = Action::kElement) {
  return {type, element, &Create<Action>};
}

/// The one table of action classes. Of several rows with one type code or one element the first
/// counts: an element that many classes write belongs to the results action.
constexpr TActionClass kActionClasses[] = {
    Class<TQuerySpecification>(Code("glob")),
    Class<TContainerSpecification>(Code("cntr")),
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
