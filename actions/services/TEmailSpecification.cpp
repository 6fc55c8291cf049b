#include "actions/services/TEmailSpecification.h"

#include <string>

namespace zaf {

std::span<const TProperty> TEmailSpecification::Properties() {
  using Mail = TEmailSpecification;
  static constexpr TProperty kRows[] = {
      Child<&Mail::server_>(Code("srvr"), "Server"),
      Child<&Mail::port_>(Code("port"), "Port"),
      Child<&Mail::from_>(Code("from"), "From"),
      Child<&Mail::to_>(Code("to  "), "To"),
      Child<&Mail::cc_>(Code("cc  "), "CC"),
      Child<&Mail::bcc_>(Code("bcc "), "BCC"),
      Child<&Mail::subject_>(Code("subj"), "Subject"),
      Child<&Mail::body_>(Code("body"), "Body"),
      Child<&Mail::content_type_>(Code("ctyp"), "ContentType"),
      Child<&Mail::character_set_>(Code("cset"), "CharacterSet"),
      Child<&Mail::wrap_>(Code("wrap"), "Wrap"),
      Child<&Mail::custom_header_>(Code("chdr"), "CustomHeader"),
      List<&Mail::parameters_>(kNoCode, "ParameterList", "ParameterItem"),
  };
  return kRows;
}

Status TEmailSpecification::WriteLegacyProperties(TSectionWriter& out) const {
  if (TLossReporter* const losses = out.GetLosses(); losses != nullptr) {
    if (content_type_.IsEmpty())
      losses->ReportIn(Code("ctyp"), LossReason::kEmptyText, "ContentType");
    if (character_set_.IsEmpty())
      losses->ReportIn(Code("cset"), LossReason::kEmptyText, "CharacterSet");
    if (!parameters_.IsEmpty())
      losses->Report(LossReason::kMailParameters, std::to_string(parameters_.GetCount()));
  }
  return TTableSpecification::WriteLegacyProperties(out);
}

}  // namespace zaf
