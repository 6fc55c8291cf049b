#include "appfile/TQuerySpecificationServer.h"

#include <algorithm>
#include <array>
#include <span>

#include "actions/AllActions.h"
#include "foundation/Heap.h"

namespace zaf {
namespace {

struct TActionClass {
  FourCharCode type;
  std::span<const std::string_view> elements;
  std::unique_ptr<TQuerySpecification> (*create)();
};

template <class Action>
constexpr TActionClass MakeClass() {
  const auto create = []() -> std::unique_ptr<TQuerySpecification> {
    return heap::MakeUnique<Action>();
  };
  if constexpr (requires { Action::kElements; })
    return {Action::kTypeCode, Action::kElements, create};
  else
    return {Action::kTypeCode, std::span(&Action::kElement, 1), create};
}

template <class... Actions>
struct TClassTable {
  static constexpr std::array kRows{MakeClass<Actions>()...};
};

constexpr std::span<const TActionClass> kClasses = TAllActions<TClassTable>::kRows;

}  // namespace

std::unique_ptr<TQuerySpecification> TQuerySpecificationServer::CreateByType(
    FourCharCode type) const {
  const auto found = std::ranges::find(kClasses, type, &TActionClass::type);
  return found == kClasses.end() ? MakeClass<TQuerySpecification>().create() : found->create();
}

Status TQuerySpecificationServer::CreateByElement(
    std::string_view element, std::unique_ptr<TQuerySpecification>& action) const {
  const auto found = std::ranges::find_if(kClasses, [=](const TActionClass& known) {
    return std::ranges::find(known.elements, element) != known.elements.end();
  });
  action = found == kClasses.end() ? nullptr : found->create();
  if (found == kClasses.end()) return Status::kMalformed;
  return action == nullptr ? Status::kFailure : Status::kOk;
}

}  // namespace zaf
