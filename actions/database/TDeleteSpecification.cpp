#include "actions/database/TDeleteSpecification.h"

namespace zaf {

std::span<const TProperty> TDeleteSpecification::Properties() {
  using Delete = TDeleteSpecification;
  static constexpr TProperty kRows[] = {
      BasePart(),
      Attribute<&Delete::commits_at_once_>(Code("cmit"), "AutoCommit"),
  };
  return kRows;
}

Status TDeleteSpecification::ReadLegacyProperty(const TLegacySection& section) {
  const Status status = TTableSpecification::ReadLegacyProperty(section);
  if (status != Status::kOk && section.code == Code("cmit")) commits_at_once_ = true;
  return status;
}

}  // namespace zaf
