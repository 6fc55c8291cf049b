// Makes seeds and a dictionary for the fuzz targets from the tables of the actions:
//
//   make_corpus DIRECTORY
//
// For each class of action there are legacy files with all sections that the class reads, the
// documents made from them, and some of these protected. A new row of a table is covered without a
// change here.

#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "actions/AllActions.h"
#include "actions/database/TSourceSpecification.h"
#include "bench/SampleFields.h"
#include "driver/Messages.h"
#include "fuzz/FuzzSupport.h"
#include "tests/support/LegacyFile.h"

namespace zaf::fuzz {
namespace {

namespace fs = std::filesystem;
using test::LegacyFile;

constexpr std::uint32_t kVariants = 10;

/// Whether an action reads this section successfully. One that lies outside of its file must fail.
bool Takes(TQuerySpecification& action, FourCharCode code, std::string_view payload) {
  TDataFile file(AsBytes(payload));
  return action.ReadLegacyProperty(
             {&file, code, 0, static_cast<std::uint32_t>(payload.size()), &action}) == Status::kOk;
}
bool Reads(TQuerySpecification& action, FourCharCode code) {
  TDataFile file;
  return action.ReadLegacyProperty({&file, code, 0, 4, &action}) != Status::kOk;
}

class TCorpus {
 public:
  explicit TCorpus(fs::path directory) : directory_(std::move(directory)) {}

  bool Make() {
    // Some sections are read by hand and have no row.
    for (const std::string_view code : bench::TSampleFields::Codes())
      codes_.insert(CodeOfText(code));
    AddCodes(TApplication::Properties());
    AddCodes(TSourceSpecification::Properties());
    AddActions(TAllActions<TClasses>());
    AddApplications();
    AddPrograms();
    AddDictionary();
    return is_complete_;
  }

 private:
  template <class... Actions>
  struct TClasses {};

  template <class... Actions>
  void AddActions(TClasses<Actions...>) {
    (AddCodes(Actions::Properties()), ...);
    (AddAction<Actions>(), ...);
  }

  void AddCodes(std::span<const TProperty> rows) {
    for (const TProperty& row : rows) {
      if (row.code != kNoCode && row.code != Code("pare")) codes_.insert(row.code);
      if (row.codec != nullptr) AddCodes(row.codec->Nested());
    }
  }

  template <class Action>
  void AddAction() {
    const std::string type = TextOf(Action::kTypeCode);
    words_.insert(type);
    for (std::uint32_t variant = 0; variant < kVariants; ++variant) {
      LegacyFile file;
      file.Action("cntr", "R").Action(type, "A", "R");
      for (const FourCharCode code : codes_) {
        Action action;
        if (!Reads(action, code)) continue;
        const std::string payload = MakePayload<Action>(code, variant);
        if (payload.empty()) {
          std::fprintf(stderr, "no payload for the section %s\n", TextOf(code).c_str());
          is_complete_ = false;
        }
        file.Payload(TextOf(code), payload);
      }
      AddFile(type + "-" + std::to_string(variant), file.Bytes());
    }
  }

  /// Random typical content alternates with any content that the action reads. Empty if there is
  /// none.
  template <class Action>
  std::string MakePayload(FourCharCode code, std::uint32_t variant) {
    constexpr bench::TSampleStyle kStyle{100, 6, 100, 60, 30};
    bench::TRandom random(variant);
    bench::TSampleText text(random);
    LegacyFile unused;
    std::string usual =
        bench::TSampleFields(kStyle, random, text, unused).MakeSection(TextOf(code));
    if (variant % 2 == 0 && !usual.empty()) return usual;
    std::vector<std::string> payloads = test::SectionPayloads();
    std::erase_if(payloads, [&](const std::string& payload) {
      Action action;
      return !Takes(action, code, payload);
    });
    return payloads.empty() ? usual : payloads[variant / 2 % payloads.size()];
  }

  void AddApplications() {
    const std::vector<std::string> payloads = test::SectionPayloads();
    for (const char* const type : {"appl", "rdoc"}) {
      for (std::size_t i = 0; i < 6; ++i) {
        LegacyFile file(type);
        for (const TProperty& row : TApplication::Properties())
          file.Payload(TextOf(row.code), payloads[i]);
        AddFile(type + std::string("-") + std::to_string(i), file.Action("cntr", "R").Bytes());
      }
    }
    AddFile("class-file", LegacyFile().Action("null", "A").Bytes(), DocumentKind::kClassFile);
    LegacyFile branches;
    branches.Action("cntr", "R").Action("if  ", "If", "R").Action("null", "Yes", "If");
    branches.Action("elif", "ElseIf", "If").Action("if  ", "Inner", "ElseIf");
    branches.Action("else", "InnerElse", "Inner").Action("else", "Else", "ElseIf");
    branches.Action("cntr", "Else", "Else").Action("null", "Else", "Else");
    AddFile("branches", branches.Bytes());
    LegacyFile sources;
    sources.Number("htyp", 1).Action("cntr", "R").Action("scrp", "S", "R");
    sources.Text("scop",
                 "\x01"
                 "Default");
    for (const char* const host : {"a", "b", "a"})
      sources.Action("cust", "Query", "R").Text("host", host).Text("dusr", "deployer");
    AddFile("data-sources", sources.Bytes());
  }

  void AddFile(const std::string& name, const std::string& bytes,
               DocumentKind kind = DocumentKind::kApplication) {
    TZanfoFile file;
    file.SetKind(kind);
    if (LoadBytes(bytes, file) != Status::kOk) {
      std::fprintf(stderr, "%s does not load\n", name.c_str());
      is_complete_ = false;
      return;
    }
    const std::string document = SaveToXml(file);
    AddWords(document);
    Write("legacy/" + name, bytes);
    Write("xml/" + name, document);
    if (name.ends_with("-0")) Write("protected/" + name, SaveToXml(file, Protection::kProtected));
  }

  /// Adds the names in a text: words that begin with a capital letter or a dash.
  void AddWords(std::string_view text) {
    const auto is_of_word = [](char c) {
      return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '-';
    };
    for (std::size_t at = 0; at < text.size(); ++at) {
      std::size_t end = at;
      while (end < text.size() && is_of_word(text[end])) ++end;
      const bool is_name = std::isupper(static_cast<unsigned char>(text[at])) != 0;
      if (text[at] == '-' || (is_name && end > at + 2))
        words_.insert(std::string(text.substr(at, end - at)));
      at = std::max(at, end);
    }
  }

  void AddDictionary() {
    for (const FourCharCode code : codes_) words_.insert(TextOf(code));
    for (const std::string_view word :
         {"head", "appl", "rdoc", "pare", "<![CDATA[", "]]>", "<!--", "-->", "&#13;", "&amp;",
          "<?xml ", " Ref='", " ID='", "='", "<@APPFILEPATH>/", "ZC1:", "\xFF\xFF\xFF\xFF"})
      words_.insert(std::string(word));
    for (std::uint32_t format = 0x01000000; format <= 0x01000004; ++format)
      words_.insert(test::BigEndian(format));
    for (const std::string_view line : messages::kUsage) AddWords(line);
    std::string dictionary;
    for (const std::string& word : words_) {
      dictionary += '"';
      for (const char c : word) {
        char quoted[8];
        std::snprintf(quoted, sizeof quoted, "\\x%02X", static_cast<unsigned char>(c));
        dictionary += quoted;
      }
      dictionary += "\"\n";
    }
    Write("zanfo.dict", dictionary);
  }

  /// Random programs of operations on containers.
  void AddPrograms() {
    std::minstd_rand random(20240229);
    for (int number = 0; number < 40; ++number) {
      std::string program(1000, '\0');
      for (char& byte : program) byte = static_cast<char>(random() >> 8);
      Write("containers/" + std::to_string(number), program);
    }
  }

  void Write(const std::string& name, std::string_view content) {
    fs::create_directories((directory_ / name).parent_path());
    std::ofstream file(directory_ / name, std::ios::binary);
    is_complete_ = (file << content).flush() && is_complete_;
  }

  fs::path directory_;
  std::set<FourCharCode> codes_;
  std::set<std::string> words_;
  bool is_complete_ = true;
};

}  // namespace
}  // namespace zaf::fuzz

int main(int argument_count, char** arguments) {
  if (argument_count == 2) return zaf::fuzz::TCorpus(arguments[1]).Make() ? 0 : 1;
  std::fputs("usage: make_corpus DIRECTORY\n", stderr);
  return 2;
}
