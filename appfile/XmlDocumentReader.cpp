#include "appfile/XmlDocumentReader.h"

#include <charconv>
#include <utility>
#include <vector>

#include "actions/database/TDataSourceIndex.h"
#include "appfile/ProgramTree.h"
#include "dom/dom.h"
#include "fields/TXmlContext.h"

namespace zaf {
namespace {

/// Returns the default data source: the first one with user information; null if not found.
dom::Element FindDefaultDataSource(dom::Element data_sources) {
  dom::Element source = data_sources.getFirstChildElement("DataSource");
  while (source && !source.getFirstChildElement("DataSourceInfo"))
    source = source.getNextSiblingElement("DataSource");
  return source;
}

Status ReadDefaultDataSource(dom::Element source, const TXmlReadContext& context,
                             TApplication& application) {
  if (!source) return Status::kOk;
  const Status status =
      ReadXmlRows(TApplication::DataSourceProperties(), &application, {context, source});
  if (status != Status::kOk) return status;
  return ReadXmlRows(TApplication::DataSourceInfoProperties(), &application,
                     {context, source.getFirstChildElement("DataSourceInfo")});
}

/// Reads every element in `actions` into an action of its class, which the tree adopts. `element`
/// is the one being read, after a failure the refused one.
Status ReadActions(dom::Element actions, const TXmlReadContext& context,
                   const TQuerySpecificationServer& server, TActionTree& tree,
                   TLoadProgress* progress, std::vector<TActionEntry*>& entries, TErrorPlace& place,
                   dom::Element& element) {
  for (element = actions.getFirstChildElement(); element;
       element = element.getNextSiblingElement()) {
    element.SetRead(true);
    const std::string_view name = element.getAttribute("ID");
    if (context.losses != nullptr) context.losses->SetAction(name);
    std::unique_ptr<TQuerySpecification> action;
    Status status = server.CreateByElement(element.getTagName(), action);
    if (status == Status::kMalformed)
      place.reason = "An element in Actions is not that of an action";
    else if (status == Status::kOk)
      status = action->ReadXml(context, element);
    if (status != Status::kOk) {
      place.action = name;
      return status;
    }
    TActionEntry* const entry = tree.Adopt(std::move(action));
    if (entry == nullptr) return Status::kFailure;
    entries.push_back(entry);
    if (progress != nullptr) progress->OnAction(*entry->action);
  }
  return Status::kOk;
}

}  // namespace

Status ReadXmlDocument(std::span<std::byte> text, const TQuerySpecificationServer& server,
                       TApplication& application, TErrorPlace& place, TLoadProgress* progress,
                       TLossReporter* losses) {
  dom::ParseReport report;
  const dom::Document document = dom::DOMImplementation::createDocument(text, &report);
  if (report.fault != dom::ParseFault::kNone) {
    place.reason = report.GetReason();
    place.reason.remove_suffix(1);  // Without the full stop.
    place.line = static_cast<std::uint32_t>(report.line);
    place.column = static_cast<std::uint32_t>(report.column);
    return Status::kMalformed;
  }
  if (!document.IsComplete()) return Status::kFailure;
  const dom::Element root = document.getDocumentElement();
  const std::string_view root_name = root.getTagName();
  const auto locate = [&](dom::Element element) {
    const TDocumentPlace found = TDocumentPlaces(report).Find(element.getTagName());
    place.line = found.line;
    place.column = found.column;
  };
  if (root_name != "ZAF" && root_name != "ZCF") {
    place.reason = "The root element is neither ZAF nor ZCF";
    locate(root);
    return Status::kMalformed;
  }
  if (const std::string_view version = root.getAttribute("Version"); version.starts_with("0x"))
    std::from_chars(version.data() + 2, version.data() + version.size(), application.format_version,
                    16);
  if (root_name == "ZCF") application.kind = DocumentKind::kClassFile;
  const dom::Element data_sources = root.getFirstChildElement("DataSources");
  TDataSourceIndex data_source_index(data_sources);
  TReferenceBudget references(text.size());
  const TXmlReadContext context{TOutputIndex(root.getFirstChildElement("Outputs")),
                                data_source_index,
                                references,
                                {},
                                losses};
  if (losses != nullptr) losses->BeginDocument(report);
  if (losses != nullptr && report.replaced_count > 0)
    losses->Report(LossReason::kReplacedCharacters, std::to_string(report.replaced_count));
  Status status = ReadXmlRows(TApplication::Properties(), &application, {context, root});
  if (status != Status::kOk) return status;
  const dom::Element default_source = FindDefaultDataSource(data_sources);
  status = ReadDefaultDataSource(default_source, context, application);
  if (status != Status::kOk) return status;
  std::vector<TActionEntry*> entries;
  dom::Element refused;
  status = ReadActions(root.getFirstChildElement("Actions"), context, server, application.actions,
                       progress, entries, place, refused);
  if (status != Status::kOk) {
    locate(refused);
    return status;
  }
  status = ReadProgram(root.getFirstChildElement("Program"), entries, application.actions, refused);
  if (status == Status::kMalformed) {
    place.reason = "An ActionRef in Program names no action, or one that was taken before";
    locate(refused);
  }
  if (losses != nullptr) {
    data_source_index.MarkUnused();
    context.outputs.MarkUnused();
    default_source.SetRead(true);
    losses->SetAction({});
    losses->ReportIgnored(root);
  }
  // The joined pieces of texts are in the memory of the document.
  return status == Status::kOk && !document.IsComplete() ? Status::kFailure : status;
}

}  // namespace zaf
