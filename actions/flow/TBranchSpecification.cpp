#include "actions/flow/TBranchSpecification.h"

namespace zaf {

std::span<const TProperty> TBranchSpecification::Properties() {
  using Branch = TBranchSpecification;
  static constexpr TProperty kRows[] = {
      AttributeIfSet<&Branch::is_return_>(Code("iret"), "IsReturn"),
      Child<&Branch::action_name_>(Code("snam"), "ActionName"),
      ChildIfSet<&Branch::document_name_>(Code("dnam"), "DocumentName"),
      ChildIfSet<&Branch::full_name_>(Code("fnam"), "FullName"),
  };
  return kRows;
}

/// The server tag for the application's path now ends in a slash; older files add one.
Status TBranchSpecification::ReadLegacyProperty(const TLegacySection& section) {
  const Status status = TTableSpecification::ReadLegacyProperty(section);
  if (status == Status::kOk && section.code == Code("dnam"))
    document_name_.ReplaceAll("<@APPFILEPATH>/", "<@APPFILEPATH>");
  return status;
}

}  // namespace zaf
