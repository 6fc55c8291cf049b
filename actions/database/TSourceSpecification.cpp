#include "actions/database/TSourceSpecification.h"

#include <algorithm>

#include "actions/database/TDataSourceWriter.h"
#include "fields/PartCodec.h"

namespace zaf {
namespace {

constexpr std::string_view kDevelopmentAttribute = "DSID";
constexpr std::string_view kDeploymentAttribute = "DeploymentDSID";

/// Written in upper case but read like every other switch: documents with both spellings exist.
constexpr TSwitchCodec kUsesDefaultCodec{SwitchRule::kPositive, "TRUE", LegacySwitch::kIfOn};

}  // namespace

std::span<const TProperty> TSourceSpecification::Properties() {
  using Source = TSourceSpecification;
  static constexpr TProperty kRows[] = {
      AttributeIfSet<&Source::uses_default_>(Code("dflt"), "UseDevelopmentDataSource",
                                             kUsesDefaultCodec),
      Row<&Source::data_source_>(kNoCode, {}, XmlForm::kNone, kPartCodec<TDataSource>),
  };
  return kRows;
}

bool TSourceSpecification::IsDataSource(FourCharCode code) {
  const std::span<const TProperty> rows = TDataSource::Properties();
  return code == Code("dflt") || std::any_of(rows.begin(), rows.end(), [&](const TProperty& row) {
           return row.code == code && code != kNoCode;
         });
}

Status TSourceSpecification::ReadLegacyProperty(const TLegacySection& section) {
  const Status status = TTableSpecification::ReadLegacyProperty(section);
  if (status == Status::kOk && section.code == Code("htyp")) data_source_.UpdateTypeName();
  return status;
}

Status TSourceSpecification::WriteXml(TXmlWriteContext& context, dom::Element element,
                                      dom::Element parent) const {
  const auto write = [&] {
    if (!element) element = parent.appendElement(kElement);
    WriteXmlRows(Properties(), this, {context, element, GetName().View()});
    std::uint32_t development = 0;
    std::uint32_t deployment = 0;
    data_source_.WriteXml(context, development, deployment);
    element.appendAttribute(kDevelopmentAttribute, TDataSourceId(development).View());
    element.appendAttribute(kDeploymentAttribute, TDataSourceId(deployment).View());
    WriteCommonXml(context, element);
    return Status::kOk;
  };
  return Attempt(write, Status::kFailure);
}

Status TSourceSpecification::ReadXml(const TXmlReadContext& context, dom::Element element) {
  const auto read = [&] {
    return data_source_.ReadXml(context, element.getAttribute(kDevelopmentAttribute),
                                element.getAttribute(kDeploymentAttribute));
  };
  const Status status = Attempt(read, Status::kFailure);
  return status == Status::kOk ? TTableSpecification::ReadXml(context, element) : status;
}

}  // namespace zaf
