#include "appfile/XmlDocumentWriter.h"

#include <string_view>

#include "actions/database/TDataSourceWriter.h"
#include "appfile/ProgramTree.h"
#include "fields/TXmlContext.h"

namespace zaf {
namespace {

constexpr std::string_view kVersion = "0x02000002";

/// The containers inside the root.
struct TContainers {
  dom::Element program;
  dom::Element actions;
  dom::Element data_sources;
  dom::Element outputs;
};

dom::Element AppendContainer(dom::Element root, std::string_view comment, std::string_view name) {
  root.appendComment(comment);
  return root.appendElement(name);
}

/// Builds the document down to its empty containers.
TContainers MakeFrame(const TApplication& application, RunOnlyMark mark, TXmlWriteContext& context,
                      const dom::Document& document) {
  document.appendChild(
      document.createProcessingInstruction("xml", R"(version="1.0" encoding="ISO-8859-1")"));
  document.appendChild(document.createDocumentType(application.GetRootElement(), "zanfo.dtd"));
  if (mark == RunOnlyMark::kWritten)
    document.appendChild(document.createProcessingInstruction("zanfo", "run-only"));
  const dom::Element root = document.createElement(application.GetRootElement());
  root.appendAttribute("Version", kVersion);
  WriteXmlRows(TApplication::Properties(), &application, {context, root, {}});
  document.appendChild(root);
  TContainers containers;
  containers.program = AppendContainer(root, "Main program", "Program");
  containers.actions = AppendContainer(root, "Program actions", "Actions");
  containers.data_sources = AppendContainer(root, "Data sources", "DataSources");
  containers.outputs = AppendContainer(root, "Output blocks", "Outputs");
  return containers;
}

void WriteDefaultDataSource(const TApplication& application, TXmlWriteContext& context) {
  if (!application.HasDataSource()) return;
  const dom::Element source = context.data_sources.Append();
  WriteXmlRows(TApplication::DataSourceProperties(), &application, {context, source, {}});
  const dom::Element info = source.appendElement("DataSourceInfo");
  WriteXmlRows(TApplication::DataSourceInfoProperties(), &application, {context, info, {}});
}

}  // namespace

Status WriteXmlDocument(const TApplication& application, RunOnlyMark mark,
                        const dom::Document& document, TLossReporter* losses) {
  TDataSourceWriter data_sources;
  TXmlWriteContext context{{}, {}, data_sources};
  context.losses = losses;
  if (losses != nullptr) losses->BeginWriting();
  const TContainers containers = MakeFrame(application, mark, context, document);
  if (!containers.outputs) return Status::kFailure;
  context.actions = containers.actions;
  data_sources.SetList(containers.data_sources);
  context.outputs = containers.outputs;
  WriteDefaultDataSource(application, context);
  return WriteProgram(application.actions, containers.program, context);
}

}  // namespace zaf
