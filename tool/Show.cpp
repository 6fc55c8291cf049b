#include "tool/Show.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <new>
#include <string_view>
#include <unordered_map>

#include "appfile/TZanfoFile.h"
#include "appfile/XmlDocumentWriter.h"
#include "dom/dom.h"
#include "driver/FileConversion.h"
#include "driver/TMemoryFile.h"
#include "foundation/CText.h"
#include "tool/Messages.h"

namespace zaf {
namespace {

/// Characters of a detail at most.
constexpr std::size_t kMostDetail = 100;

/// Levels of the tree that are indented. A deep tree would else grow with the square of its depth.
constexpr std::uint32_t kMostIndented = 32;

/// A part of an action's element that tells what the action is about, and the words before it.
struct TDetail {
  std::string_view words;
  std::string_view path;  ///< Elements, from the action's child on; `@NAME`: its attribute.
};

/// An action is told by those that it has, in this order.
constexpr TDetail kDetails[] = {
    {"", "Tables/TableName"},
    {"", "SearchPageInfo/SearchPageColumns/SearchPageColumn/TableName"},
    {"", "InsertColumns/InsertColumn/TableName"},
    {"", "Custom"},
    {"", "Expression"},
    {"", "LoopVariable"},
    {"from ", "Start"},
    {"to ", "Stop"},
    {"by ", "Increment"},
    {"loop ", "@LoopLabel"},
    {"to ", "ActionName"},
    {"in ", "DocumentName"},
    {"", "AssignItem/Name"},
    {"cookie ", "Cookie/Name"},
    {"to ", "To"},
    {"about ", "Subject"},
    {"", "Command"},
    {"", "Target"},
    {"read ", "ReadFile/Name"},
    {"write ", "WriteFile/Name"},
    {"delete ", "DeleteFile/Name"},
    {"", "Script"},
    {"", "Class"},
    {"isolation ", "Isolation"},
    {"", "EndType"},
};

/// Appends the texts of the elements that the path leads to, each once, separated by commas.
void AppendTexts(dom::Element parent, std::string_view path, std::vector<std::string>& texts) {
  const std::size_t slash = path.find('/');
  const std::string_view name = path.substr(0, slash);
  for (dom::Element child = parent.getFirstChildElement(name); child && texts.size() < kMostDetail;
       child = child.getNextSiblingElement(name)) {
    if (slash != std::string_view::npos) {
      AppendTexts(child, path.substr(slash + 1), texts);
    } else if (std::string text(child.getTextContent());
               !text.empty() && std::ranges::find(texts, text) == texts.end()) {
      texts.push_back(std::move(text));
    }
  }
}

/// The text cut to a number of characters, with each run of white space as one blank.
std::string Shortened(std::string_view text, std::size_t most) {
  std::string shortened;
  for (const char character : text) {
    const bool is_space = character == ' ' || (character >= '\t' && character <= '\r');
    if (is_space && (shortened.empty() || shortened.back() == ' ')) continue;
    if (shortened.size() == most) return shortened + "...";
    shortened += is_space ? ' ' : character;
  }
  if (shortened.ends_with(' ')) shortened.pop_back();
  return shortened;
}

std::string Joined(const std::vector<std::string>& texts, std::string_view separator) {
  std::string joined;
  for (const std::string& text : texts) joined.append(joined.empty() ? "" : separator).append(text);
  return joined;
}

/// A comparison of a condition. In an if its parts are elements, in a while some are attributes.
std::string ComparisonOf(dom::Element info) {
  std::vector<std::string> parts;
  for (const std::string_view name : {"Conjunction", "ExpLeft", "Operator", "ExpRight"}) {
    const dom::Element child = info.getFirstChildElement(name);
    std::string part(child ? child.getTextContent() : info.getAttribute(name));
    if (!part.empty()) parts.push_back(std::move(part));
  }
  return Joined(parts, " ");
}

/// Data sources by their IDs, in a few words.
using TDataSourceWords = std::map<std::string_view, std::string>;

TDataSourceWords DataSourcesOf(dom::Element list, std::uint32_t& count) {
  TDataSourceWords sources;
  for (dom::Element source = list.getFirstChildElement(); source;
       source = source.getNextSiblingElement(), ++count) {
    std::vector<std::string> parts;
    for (const char* const name : {"DSType", "DSN", "DBMS", "Host", "Database"})
      AppendTexts(source, name, parts);
    sources[source.getAttribute("ID")] = Joined(parts, " ");
  }
  return sources;
}

std::string DetailOf(dom::Element action, const TDataSourceWords& sources) {
  std::vector<std::string> parts;
  for (const TDetail& detail : kDetails) {
    std::vector<std::string> texts;
    if (detail.path.starts_with('@'))
      texts.emplace_back(action.getAttribute(detail.path.substr(1)));
    else
      AppendTexts(action, detail.path, texts);
    const std::string text = Joined(texts, ", ");
    if (!text.empty()) parts.push_back(std::string(detail.words) + text);
  }
  for (dom::Element info = action.getFirstChildElement("ExpressionInfo");
       info && parts.size() < kMostDetail; info = info.getNextSiblingElement("ExpressionInfo"))
    parts.push_back(ComparisonOf(info));
  if (action.getAttribute("UseDevelopmentDataSource") == "TRUE") {
    parts.emplace_back("on the application's data source");
  } else if (const auto source = sources.find(action.getAttribute("DSID"));
             source != sources.end() && source->second != "Default") {
    parts.push_back("on " + source->second);
  }
  return Shortened(Joined(parts, "; "), kMostDetail);
}

/// "[Search Action] Name" is of the kind "Search".
std::string KindOf(const TQuerySpecification& action) {
  CText display_name;
  action.GetDisplayName(display_name);
  std::string_view kind = display_name.View();
  kind = kind.substr(1, kind.find(']') - 1);
  if (constexpr std::string_view kWord = " Action"; kind.ends_with(kWord))
    kind.remove_suffix(kWord.size());
  return std::string(kind);
}

std::uint32_t CountChildren(dom::Element parent) {
  std::uint32_t count = 0;
  for (dom::Element child = parent.getFirstChildElement(); child;
       child = child.getNextSiblingElement())
    ++count;
  return count;
}

class TLoad {
 public:
  explicit TLoad(TShownFile& shown) : shown_(shown) {}

  /// Fills the record's result; its outcome says whether the rest was filled.
  void Run() {
    TFileResult& result = shown_.record.result;
    TDataFile data;
    result.outcome = FileOutcome::kInputNotOpened;
    result.status = data.Open(CText(shown_.record.input.path), TOpenMode::kRead);
    if (result.status != Status::kOk) return;
    result.outcome = FileOutcome::kInputNotRead;
    result.bytes_in = data.GetSize();
    TZanfoFile file;
    file.SetObserver(&losses_);
    file.SetKind(KindOfName(shown_.record.input.path));
    result.status = file.Load(data, nullptr);
    result.form = file.GetForm();
    const TApplication& application = file.GetApplication();
    result.is_class_file = application.kind == DocumentKind::kClassFile;
    result.error_place = file.GetErrorPlace();
    if (result.status != Status::kOk) return;
    result.outcome = FileOutcome::kOutputNotWritten;
    TMemoryFile document;
    result.status = file.Save(document, nullptr, Protection::kPlain);
    if (result.status != Status::kOk) return;
    result.outcome = FileOutcome::kConverted;
    Describe(application);
  }

 private:
  void Describe(const TApplication& application) {
    shown_.record.result.actions = application.actions.GetActionCount();
    const dom::Document document = dom::DOMImplementation::createDocument();
    static_cast<void>(WriteXmlDocument(application, RunOnlyMark::kNone, document));
    const dom::Element root = document.getDocumentElement();
    shown_.version = root.getAttribute("Version");
    if (application.is_legacy) {
      std::array<char, 16> number;
      std::snprintf(number.data(), number.size(), "0x%08X", application.format_version);
      shown_.version = number.data();
    }
    shown_.title = ToUtf8(application.title.View());
    shown_.author = ToUtf8(application.author.View());
    shown_.revision = ToUtf8(application.revision.View());
    shown_.outputs = CountChildren(root.getFirstChildElement("Outputs"));
    const TDataSourceWords sources =
        DataSourcesOf(root.getFirstChildElement("DataSources"), shown_.data_sources);
    // The elements are in tree order, without the root container.
    const TActionEntry* const top = application.actions.GetRoot();
    std::unordered_map<const TActionEntry*, std::int64_t> indices{{top, -1}};
    dom::Element element = root.getFirstChildElement("Actions").getFirstChildElement();
    for (const TActionEntry* entry = top == nullptr ? nullptr : TActionTree::GetNext(*top);
         entry != nullptr && element;
         entry = TActionTree::GetNext(*entry), element = element.getNextSiblingElement()) {
      const std::int64_t parent = indices[entry->parent];
      indices[entry] = static_cast<std::int64_t>(shown_.actions.size());
      shown_.actions.push_back(
          {ToUtf8(entry->action->GetName().View()), KindOf(*entry->action),
           std::string(element.getTagName()), ToUtf8(DetailOf(element, sources)), parent,
           parent < 0 ? 0 : shown_.actions[static_cast<std::size_t>(parent)].depth + 1});
    }
  }

    class TLosses final : public TLossObserver {
   public:
    explicit TLosses(std::vector<TLoss>& losses) : losses_(losses) {}
    void OnLoss(const TLoss& loss) override { losses_.push_back(loss); }

   private:
    std::vector<TLoss>& losses_;
  };

  TShownFile& shown_;
  TLosses losses_{shown_.record.losses};
};

}  // namespace

TShownFile LoadShownFile(const std::string& path) {
  TShownFile shown;
  shown.record.input.path = path;
  TLoad(shown).Run();
  if (shown.record.result.outcome != FileOutcome::kConverted)
    shown.record.error = ErrorOfOutcome(shown.record);
  return shown;
}

std::string TreeView(const TShownFile& file) {
  const TFileResult& result = file.record.result;
  std::string view = Printable(file.record.input.path) + ": " + std::string(FormWord(*result.form)) + " " +
                     (result.is_class_file ? "class file" : "application") + ", version " +
                     file.version + "\n";
  const std::pair<const char*, const std::string&> properties[] = {
      {"Title:    ", file.title}, {"Author:   ", file.author}, {"Revision: ", file.revision}};
  for (const auto& [word, text] : properties)
    if (!text.empty()) view.append(word).append(Printable(text)).append("\n");
  const std::pair<std::uint64_t, const char*> numbers[] = {{result.actions, "action"},
                                                           {file.data_sources, "data source"},
                                                           {file.outputs, "output"},
                                                           {result.bytes_in, "byte"}};
  for (const auto& [number, word] : numbers)
    view += (word == numbers[0].second ? "" : ", ") + std::to_string(number) + " " + word +
            (number == 1 ? "" : "s");
  view += "\n\n";
  for (const TShownAction& action : file.actions) {
    view.append(std::size_t{2} * std::min(action.depth, kMostIndented), ' ');
    view += action.kind + " \"" + Printable(action.name) + "\"";
    if (!action.detail.empty()) view += "  " + Printable(action.detail);
    view += "\n";
  }
  return view;
}

}  // namespace zaf
