#include "actions/flow/TBranchSpecification.h"

namespace zaf {
namespace {

/// The tag for the application's path. Its value now ends in a slash, which older files add.
constexpr const char* kPathTag = "<@APPFILEPATH>";
constexpr const char* kOldPathTag = "<@APPFILEPATH>/";

}  // namespace

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

Status TBranchSpecification::ReadLegacyProperty(const TLegacySection& section) {
  const Status status = TTableSpecification::ReadLegacyProperty(section);
  if (status == Status::kOk && section.code == Code("dnam"))
    document_name_.ReplaceAll(kOldPathTag, kPathTag);
  return status;
}

Status TBranchSpecification::WriteLegacyProperties(TSectionWriter& out) const {
  if (out.GetLosses() != nullptr &&
      document_name_.View().find(kOldPathTag) != std::string_view::npos)
    out.GetLosses()->ReportIn(Code("dnam"), LossReason::kRemovedSlash, {});
  return TTableSpecification::WriteLegacyProperties(out);
}

}  // namespace zaf
