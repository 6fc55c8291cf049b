#include "appfile/TQuerySpecificationServer.h"

#include <algorithm>
#include <array>
#include <span>

#include "actions/AllActions.h"

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
    return std::make_unique<Action>();
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
  if (found == kClasses.end()) return std::make_unique<TQuerySpecification>();
  return found->create();
}

std::unique_ptr<TQuerySpecification> TQuerySpecificationServer::CreateByElement(
    std::string_view element) const {
  for (const TActionClass& known : kClasses)
    if (std::ranges::find(known.elements, element) != known.elements.end()) return known.create();
  return nullptr;
}

}  // namespace zaf
