#include "appfile/XmlDocumentWriter.h"

#include <string_view>

#include "actions/database/TDataSourceWriter.h"
#include "appfile/ProgramTree.h"
#include "fields/TXmlContext.h"

namespace zaf {
namespace {

constexpr std::string_view kVersion = "0x02000002";

dom::Element AppendContainer(dom::Element root, std::string_view comment, std::string_view name) {
  root.appendComment(comment);
  return root.appendElement(name);
}

/// Fills the document up to the application's own fields and returns the root.
dom::Element BeginDocument(const TApplication& application, RunOnlyMark mark,
                           TXmlWriteContext& context, const dom::Document& document) {
  document.appendChild(
      document.createProcessingInstruction("xml", R"(version="1.0" encoding="ISO-8859-1")"));
  document.appendChild(document.createDocumentType(application.GetRootElement(), "zanfo.dtd"));
  if (mark == RunOnlyMark::kWritten)
    document.appendChild(document.createProcessingInstruction("zanfo", "run-only"));
  const dom::Element root = document.createElement(application.GetRootElement());
  root.appendAttribute("Version", kVersion);
  document.appendChild(root);
  WriteXmlRows(TApplication::Properties(), &application, {context, root, {}});
  return root;
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
  const dom::Element root = BeginDocument(application, mark, context, document);
  const dom::Element program = AppendContainer(root, "Main program", "Program");
  context.actions = AppendContainer(root, "Program actions", "Actions");
  data_sources.SetList(AppendContainer(root, "Data sources", "DataSources"));
  context.outputs = AppendContainer(root, "Output blocks", "Outputs");
  if (!context.outputs) return Status::kFailure;
  WriteDefaultDataSource(application, context);
  return WriteProgram(application.actions, program, context);
}

}  // namespace zaf
