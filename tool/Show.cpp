#include "tool/Show.h"

#include <algorithm>
#include <array>
#include <map>
#include <new>
#include <string_view>
#include <unordered_map>

#include "appfile/TZanfoFile.h"
#include "appfile/XmlDocumentWriter.h"
#include "dom/dom.h"
#include "driver/FileConversion.h"
#include "fields/TByteAccount.h"
#include "fields/TSectionWriter.h"
#include "foundation/CText.h"
#include "foundation/TMemoryFile.h"
#include "tool/Messages.h"

namespace zaf {
namespace {

/// Maximum number of characters of a detail.
constexpr std::size_t kMostDetail = 100;
/// Maximum number of characters of a value.
constexpr std::size_t kMostValue = 80;

/// Number of levels of the tree that are indented, so that a deep tree does not take space
/// proportional to the square of its depth.
constexpr std::uint32_t kMostIndented = 32;

/// A part of an action's element that describes the action, and the words before it.
struct TDetail {
  std::string_view words;
  std::string_view path;  ///< Elements, from the action's child on; `@NAME` is an attribute of it.
};

/// The fields that describe an action in the tree, if present, in this order.
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

/// Appends the texts of the elements at the path, each once, separated by commas.
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

/// Cuts a text to a number of characters, with each run of white space as one blank.
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

/// Short descriptions of data sources by their IDs.
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

std::string Hexadecimal(std::uint32_t number) { return Format("0x%08X", number); }

std::string Plural(std::uint64_t count, const char* one, const char* several) {
  return std::to_string(count) + " " + (count == 1 ? one : several);
}

/// Formats an offset and a length as columns.
std::string Place(std::uint64_t offset, std::uint64_t length) {
  return Format("+0x%08llX %8llu", static_cast<unsigned long long>(offset),
                static_cast<unsigned long long>(length));
}

/// The kind of an action: "Search" for "[Search Action] Name".
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

/// A short description of a section's value.
std::string ValueOf(const TByteAccount::TSection& section, std::string_view image) {
  const auto offset =
      static_cast<std::size_t>(std::min<std::uint64_t>(section.offset, image.size()));
  std::string_view bytes = image.substr(offset, static_cast<std::size_t>(section.length));
  std::uint32_t first = 0;
  std::array<std::uint32_t, 2> numbers{};
  TByteReader reader(AsBytes(image.substr(offset)));
  static_cast<void>(reader.ReadU32(first));
  switch (section.form) {
    case SectionForm::kHeader:
      static_cast<void>(reader.ReadU32(numbers));
      return "format " + Hexadecimal(first) + ", type '" + TextOf(FourCharCode{numbers[0]}) +
             "', map at " + Hexadecimal(numbers[1]);
    case SectionForm::kMap:
      return Plural(section.length / kSectionMapEntrySize, "entry", "entries");
    case SectionForm::kText:
      if (bytes.ends_with('\0')) bytes.remove_suffix(1);
      return Shortened(bytes, kMostValue);
    case SectionForm::kNumber: {
      const std::string code = TextOf(FourCharCode{first});
      const bool is_code = std::ranges::all_of(code, [](char c) { return c >= ' ' && c < 0x7F; });
      return is_code ? "'" + code + "'" : std::to_string(static_cast<std::int32_t>(first));
    }
    case SectionForm::kTexts: {
      bytes.remove_prefix(std::min(bytes.size(), sizeof first));
      std::string texts(bytes);
      if (texts.ends_with('\0')) texts.pop_back();
      for (std::size_t end = 0; (end = texts.find('\0', end)) != std::string::npos;)
        texts.replace(end, 1, ", ");
      return Shortened(texts, kMostValue);
    }
    case SectionForm::kRecords:
      return Plural(section.length < sizeof first ? 0 : first, "record", "records");
    case SectionForm::kBytes:
    case SectionForm::kUnread:
      break;
  }
  return Plural(section.length, "byte", "bytes");
}

/// Loads a file. Observes its losses and the use of its bytes.
class TLoad final : public TLossObserver {
 public:
  explicit TLoad(TShownFile& shown) : shown_(shown) {}

  /// Fills the record's result, whose outcome shows whether the rest was filled.
  void Run() {
    TFileResult& result = shown_.record.result;
    TDataFile data;
    TZanfoFile file;
    file.SetObserver(this);
    if (!LoadInput(CText(shown_.record.input.path), data, file, result)) return;
    const TApplication& application = file.GetApplication();
    result.outcome = FileOutcome::kOutputNotWritten;
    TMemoryFile document;
    result.status = file.Save(document, nullptr, Protection::kPlain);
    if (result.status != Status::kOk) return;
    result.outcome = FileOutcome::kConverted;
    Describe(application);
    if (application.is_legacy) {
      shown_.image = AsText(data.GetImage());
      // The header of a run-only file is its only part that is not scrambled.
      if (application.is_run_only) data.Scramble(kRecordHeaderSize, shown_.image.data());
      Account(shown_.image);
    }
  }

 private:
  void OnLoss(TLoss&& loss) override { shown_.record.losses.push_back(std::move(loss)); }
  TByteAccount* GetAccount() override { return &account_; }

  /// The records of a legacy file are read in tree order; the first one is the file's own, and the
  /// second one is that of the root container if there is one more than there are actions.
  void Account(std::string_view image) {
    const std::vector<std::string>& records = account_.GetRecords();
    const auto first = static_cast<std::int64_t>(records.size()) -
                       static_cast<std::int64_t>(shown_.actions.size());
    std::vector<std::size_t> order;
    const std::vector<TByteAccount::TSection>& sections = account_.GetSections();
    for (std::size_t i = 0; i < sections.size(); ++i) order.push_back(i);
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return sections[i].offset; });
    for (const std::size_t i : order) {
      const TByteAccount::TSection& section = sections[i];
      shown_.sections.push_back(
          {section.offset, section.length, ToUtf8(TextOf(section.code)),
           std::max<std::int64_t>(-1, static_cast<std::int64_t>(section.record) - first),
           section.record == 0 ? "" : ToUtf8(records[section.record]), std::string(section.field),
           ToUtf8(ValueOf(section, image))});
    }
    for (const TByteAccount::TRange& range : account_.TakeRanges(image.size())) {
      std::string what;
      if (range.section != TByteAccount::kNoSection) {
        const TByteAccount::TSection& section = sections[range.section];
        what = "'" + ToUtf8(TextOf(section.code)) + "'";
        if (!section.field.empty()) what += " " + std::string(section.field);
        if (section.record > 0) what += " of \"" + ToUtf8(records[section.record]) + "\"";
      }
      shown_.ranges.push_back({range.offset, range.end - range.offset,
                               static_cast<std::size_t>(range.use), std::move(what)});
    }
  }

  void Describe(const TApplication& application) {
    const dom::Document document = dom::DOMImplementation::createDocument();
    static_cast<void>(WriteXmlDocument(application, RunOnlyMark::kNone, document));
    const dom::Element root = document.getDocumentElement();
    shown_.version = Hexadecimal(application.format_version);
    shown_.title = ToUtf8(application.title.View());
    shown_.author = ToUtf8(application.author.View());
    shown_.revision = ToUtf8(application.revision.View());
    shown_.outputs = CountChildren(root.getFirstChildElement("Outputs"));
    const TDataSourceWords sources =
        DataSourcesOf(root.getFirstChildElement("DataSources"), shown_.data_sources);
    // The elements are in tree order and omit the root container.
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

  TShownFile& shown_;
  TByteAccount account_;
};

}  // namespace

TShownFile LoadShownFile(const std::string& path) {
  TShownFile shown;
  shown.record.input.path = path;
  TLoad(shown).Run();
  if (shown.record.result.outcome != FileOutcome::kConverted)
    shown.record.error = ErrorOfReading(shown.record);
  return shown;
}

std::string SectionsView(const TShownFile& file) {
  std::string view;
  for (const TShownSection& section : file.sections) {
    view += Place(section.offset, section.length) + "  '" + Printable(section.code) + "'";
    view += "  " + (section.owner.empty() ? "" : "\"" + Printable(section.owner) + "\" ") +
            section.field + (section.field.empty() ? "" : " = ") + Printable(section.value) + "\n";
  }
  return view;
}

std::string BytesView(const TShownFile& file) {
  std::string view;
  for (const TShownRange& range : file.ranges)
    view += Place(range.offset, range.length) + "  " + std::string(kUseWords[range.use]) +
            (range.what.empty() ? "" : "  " + Printable(range.what)) + "\n";
  return view;
}

std::string TreeView(const TShownFile& file) {
  const TFileResult& result = file.record.result;
  std::string view =
      Printable(file.record.input.path) + ": " + std::string(FormWord(*result.form)) + " " +
      (result.is_class_file ? "class file" : "application") + ", version " + file.version + "\n";
  const std::pair<const char*, const std::string&> properties[] = {
      {"Title:    ", file.title}, {"Author:   ", file.author}, {"Revision: ", file.revision}};
  for (const auto& [word, text] : properties)
    if (!text.empty()) view.append(word).append(Printable(text)).append("\n");
  view += Plural(result.actions, "action", "actions") + ", " +
          Plural(file.data_sources, "data source", "data sources") + ", " +
          Plural(file.outputs, "output", "outputs") + ", " +
          Plural(result.bytes_in, "byte", "bytes") + "\n\n";
  for (const TShownAction& action : file.actions) {
    view.append(std::size_t{2} * std::min(action.depth, kMostIndented), ' ');
    view += action.kind + " \"" + Printable(action.name) + "\"";
    if (!action.detail.empty()) view += "  " + Printable(action.detail);
    view += "\n";
  }
  return view;
}

}  // namespace zaf
