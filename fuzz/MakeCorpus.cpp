// Makes the seeds and the dictionary of the fuzz targets from the tables of the actions:
//
//   make_corpus FUZZ-DIRECTORY [--check]
//
// There is a legacy file of every class of action with all its sections, in several variants, the
// document that it becomes, and some of them protected. They stand in directories named "made";
// what stands beside those is somebody's finding and stays. With --check nothing is written: it
// fails when anything is not as it would be made.

#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>

#include "actions/AllActions.h"
#include "actions/database/TSourceSpecification.h"
#include "driver/Messages.h"
#include "fuzz/FuzzSupport.h"
#include "fuzz/SectionSamples.h"
#include "tests/support/LegacyFile.h"

namespace zaf::fuzz {
namespace {

namespace fs = std::filesystem;
using test::LegacyFile;

/// The files to be, by their names within the fuzz directory.
using TFiles = std::map<std::string, std::string>;

std::string Text(FourCharCode code) { return std::string(Characters(code).data(), 4); }

/// A code as a part of a file's name.
std::string FileName(FourCharCode code) {
  std::string name = Text(code);
  name.resize(name.find_last_not_of(' ') + 1);
  return name;
}

/// Whether an action reads the sections of this code: it cannot read one that no file holds.
bool Reads(TQuerySpecification& action, FourCharCode code) {
  TDataFile file;
  return action.ReadLegacyProperty({&file, code, 0, 4, &action}) != Status::kOk;
}

class TCorpus {
 public:
  /// False when the tables name a section that there is no sample of.
  bool Make() {
    const bool is_complete = samples_.AddRows(TApplication::Properties()) &&
                             samples_.AddRows(TSourceSpecification::Properties()) &&
                             AddRows(TAllActions<TClasses>());
    if (!is_complete) return false;
    AddActions(TAllActions<TClasses>());
    AddApplications();
    AddDictionary();
    return is_loadable_;
  }

  [[nodiscard]] const TFiles& GetFiles() const { return files_; }

 private:
  template <class... Actions>
  struct TClasses {};

  template <class... Actions>
  bool AddRows(TClasses<Actions...>) {
    return (samples_.AddRows(Actions::Properties()) && ...);
  }

  template <class... Actions>
  void AddActions(TClasses<Actions...>) {
    (AddAction<Actions>(), ...);
  }

  /// One file for each variant of the section that has most.
  template <class Action>
  void AddAction() {
    std::vector<FourCharCode> codes;
    std::size_t count = 2;
    for (const auto& [code, variants] : samples_.All()) {
      Action action;
      const bool is_assignment = code == Code("assn") || code == Code("assx");
      const bool is_wanted = !is_assignment || Action::kTypeCode == TQuerySpecification::kTypeCode;
      if (!is_wanted || code == Code("pare") || !Reads(action, code)) continue;
      codes.push_back(code);
      count = std::max(count, variants.size());
    }
    words_.insert(Text(Action::kTypeCode));
    for (std::size_t i = 0; i < count; ++i) {
      LegacyFile file;
      file.Action("cntr", "R").Action(Text(Action::kTypeCode), "A", "R");
      for (const FourCharCode code : codes) file.Block(Text(code), samples_.Get(code, i));
      AddFile(FileName(Action::kTypeCode) + "-" + std::to_string(i), file.Bytes(), i == 0);
    }
  }

  void AddApplications() {
    for (std::size_t i = 0; i < 2; ++i) {
      LegacyFile plain;
      LegacyFile run_only("rdoc");
      for (const TProperty& row : TApplication::Properties()) {
        plain.Block(Text(row.code), samples_.Get(row.code, i));
        run_only.Block(Text(row.code), samples_.Get(row.code, i));
      }
      AddFile("application-" + std::to_string(i), plain.Bytes());
      AddFile("run-only-" + std::to_string(i), run_only.Action("cntr", "R").Bytes(), true);
    }
    AddFile("class-file", LegacyFile().Action("null", "A").Bytes(), true, DocumentKind::kClassFile);
    // What a document cannot hold or does not keep.
    AddFile("lost", LegacyFile()
                        .Number("htyp", 1)
                        .Text("titl", "\x01")
                        .Action("cntr", "R")
                        .Action("asgn", "A", "R")
                        .Block("agit", samples_.Get(Code("agit"), 2))
                        .Action("scrp", "S", "R")
                        .Text("scop",
                              "\x01"
                              "Default")
                        .Bytes());
    AddFile("branches", LegacyFile()
                            .Action("cntr", "R")
                            .Action("if  ", "If", "R")
                            .Action("null", "Yes", "If")
                            .Action("elif", "ElseIf", "If")
                            .Action("if  ", "Inner", "ElseIf")
                            .Action("else", "InnerElse", "Inner")
                            .Action("else", "Else", "ElseIf")
                            .Action("grop", "Group", "R")
                            .Action("cntr", "Group", "Group")
                            .Action("null", "Group", "Group")
                            .Bytes());
    LegacyFile sources;
    sources.Number("htyp", static_cast<std::uint32_t>(Code("odbc"))).Action("cntr", "R");
    for (const char* const host : {"a", "b", "a"})
      sources.Action("cust", "Query", "R").Text("host", host).Text("dusr", "deployer");
    AddFile("data-sources", sources.Bytes());
  }

  void AddFile(const std::string& name, const std::string& bytes, bool is_protected_too = false,
               DocumentKind kind = DocumentKind::kApplication) {
    TZanfoFile file;
    file.SetKind(kind);
    if (LoadBytes(bytes, file) != Status::kOk) {
      std::fprintf(stderr, "%s does not load\n", name.c_str());
      is_loadable_ = false;
      return;
    }
    files_["corpus/legacy/made/" + name] = bytes;
    const std::string document = SaveToXml(file);
    AddWords(document);
    files_["corpus/xml/made/" + name] = document;
    if (is_protected_too)
      files_["corpus/protected/made/" + name] = SaveToXml(file, Protection::kProtected);
  }

  /// Takes the names of a document, and the values that are words.
  void AddWords(std::string_view document) {
    const auto is_letter = [](char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; };
    for (std::size_t at = 0; at < document.size(); ++at) {
      std::size_t end = at;
      while (end < document.size() && (is_letter(document[end]) || document[end] == '.')) ++end;
      const bool is_word = end > at + 2 && std::isupper(static_cast<unsigned char>(document[at]));
      if (is_word && document[end - 1] != '.')
        words_.insert(std::string(document.substr(at, end - at)));
      at = std::max(at, end);
    }
  }

  void AddDictionary() {
    for (const auto& [code, variants] : samples_.All()) words_.insert(Text(code));
    for (const std::string_view word :
         {"head", "appl", "rdoc", "<![CDATA[", "]]>", "<!--", "-->", "&#13;", "&amp;", "<?xml ",
          " Ref='", " ID='", "='", "<@APPFILEPATH>/", "ZC1:", "InputCheckbox", "\xFF\xFF\xFF\xFF"})
      words_.insert(std::string(word));
    for (std::uint32_t format = 0x01000000; format <= 0x01000004; ++format)
      words_.insert(test::BigEndian(format));
    for (const std::string_view line : messages::kUsage) AddOptions(line);
    std::string dictionary = "# Made by make_corpus. Codes, words and names that matter.\n";
    for (const std::string& word : words_) {
      dictionary += '"';
      for (const char c : word) {
        char quoted[8];
        const auto byte = static_cast<unsigned char>(c);
        const bool is_plain = c >= 0x20 && c < 0x7F && c != '"' && c != '\\';
        std::snprintf(quoted, sizeof quoted, is_plain ? "%c" : "\\x%02X", byte);
        dictionary += quoted;
      }
      dictionary += "\"\n";
    }
    files_["zanfo.dict"] = dictionary;
  }

  /// The options that a line of the program's help names.
  void AddOptions(std::string_view line) {
    for (std::size_t at = line.find('-'); at != std::string_view::npos; at = line.find('-', at)) {
      const std::size_t end = std::min(line.find_first_of(" ]|\n", at), line.size());
      words_.insert(std::string(line.substr(at, end - at)));
      at = end;
    }
  }

  TSectionSamples samples_;
  TFiles files_;
  std::set<std::string> words_;
  bool is_loadable_ = true;
};

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Whether the directory has these files with these contents and no others beside them.
bool IsCurrent(const fs::path& directory, const TFiles& files) {
  std::size_t count = 1;  // The dictionary.
  for (const auto& entry : fs::recursive_directory_iterator(directory / "corpus"))
    if (entry.is_regular_file() && entry.path().parent_path().filename() == "made") ++count;
  bool is_current = count == files.size();
  for (const auto& [name, content] : files) {
    if (ReadFile(directory / name) == content) continue;
    std::fprintf(stderr, "%s is out of date\n", name.c_str());
    is_current = false;
  }
  if (!is_current) std::fprintf(stderr, "make_corpus makes the files anew\n");
  return is_current;
}

bool WriteFiles(const fs::path& directory, const TFiles& files) {
  for (const char* const target : {"legacy", "xml", "protected"})
    fs::remove_all(directory / "corpus" / target / "made");
  for (const auto& [name, content] : files) {
    fs::create_directories((directory / name).parent_path());
    std::ofstream(directory / name, std::ios::binary) << content;
  }
  return IsCurrent(directory, files);
}

}  // namespace
}  // namespace zaf::fuzz

int main(int argument_count, char** arguments) {
  using namespace zaf::fuzz;
  const bool is_check = argument_count == 3 && std::string_view(arguments[2]) == "--check";
  if (argument_count != 2 && !is_check) {
    std::fprintf(stderr, "usage: make_corpus FUZZ-DIRECTORY [--check]\n");
    return 2;
  }
  TCorpus corpus;
  if (!corpus.Make()) return 1;
  const TFiles& files = corpus.GetFiles();
  return (is_check ? IsCurrent(arguments[1], files) : WriteFiles(arguments[1], files)) ? 0 : 1;
}
