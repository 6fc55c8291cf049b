#include "tests/support/Convert.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>

namespace zaf::test {
namespace {

/// A temporary file, in memory where the system has room there, that is gone when the test is done
/// with it.
class TemporaryFile {
 public:
  TemporaryFile() {
    const std::filesystem::path memory = "/dev/shm";
    const bool has_memory = std::filesystem::is_directory(memory);
    static std::random_device random;
    path_ = (has_memory ? memory : std::filesystem::temp_directory_path()) /
            ("zaf2xml-" + std::to_string(random()) + std::to_string(random()));
  }
  ~TemporaryFile() { std::filesystem::remove(path_); }

  [[nodiscard]] CText Name() const { return CText(path_.string()); }
  [[nodiscard]] std::string Content() const {
    std::ifstream file(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::filesystem::path path_;
};

/// Documents of more bytes, of which the tests of limits make some, are not checked: that would
/// take longer than they do.
constexpr std::size_t kMostChecked = std::size_t{4} << 20;

/// What xmllint says of a document; empty when it is valid or when there is no xmllint.
std::string Complaints(const TemporaryFile& document) {
  static const bool has_xmllint = std::system("xmllint --version >/dev/null 2>&1") == 0;
  if (!has_xmllint) return {};
  const TemporaryFile complaints;
  const std::string command = "xmllint --nonet --noout --huge --dtdvalid " ZAF2XML_DTD " " +
                              std::string(document.Name().View()) + " 2>" +
                              std::string(complaints.Name().View());
  // It warns of valid documents, too.
  return std::system(command.c_str()) == 0 ? std::string() : complaints.Content();
}

}  // namespace

Status LoadBytes(std::string_view bytes, TZanfoFile& file) {
  TDataFile data(AsBytes(bytes));
  return file.Load(data, nullptr);
}

std::string SaveToXml(TZanfoFile& file, Protection protection) {
  const TemporaryFile output;
  TDataFile data;
  const bool is_saved = data.Open(output.Name(), TOpenMode::kCreate) == Status::kOk &&
                        file.Save(data, nullptr, protection) == Status::kOk;
  data.Close();
  if (!is_saved) return "save failed";
  std::string document = output.Content();
  static std::set<std::string> valid;  // Many tests write the same documents.
  const bool is_checked = protection == Protection::kPlain && document.size() <= kMostChecked;
  if (!is_checked || valid.contains(document)) return document;
  const std::string complaints = Complaints(output);
  if (complaints.empty()) valid.insert(document);
  return document + complaints;
}

std::string SaveToLegacy(const TZanfoFile& file) {
  const TemporaryFile output;
  TDataFile data;
  const bool is_saved = data.Open(output.Name(), TOpenMode::kCreate) == Status::kOk &&
                        file.SaveLegacy(data) == Status::kOk;
  data.Close();
  return is_saved ? output.Content() : "save failed";
}

std::string ToXml(std::string_view bytes) {
  TZanfoFile file;
  if (const Status status = LoadBytes(bytes, file); status != Status::kOk) {
    char text[16];
    std::snprintf(text, sizeof text, "status 0x%04X", static_cast<unsigned>(status));
    return text;
  }
  return SaveToXml(file);
}

std::string Expected(std::string_view name) {
  std::ifstream file(ZAF2XML_DOCUMENTS "/" + std::string(name) + ".xml", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string ElementOf(std::string_view document, std::string_view name) {
  const std::string tag(name);
  const std::size_t begin = document.find("<" + tag);
  if (begin == std::string_view::npos) return {};
  const std::size_t end = document.rfind("</" + tag + ">");
  if (end != std::string_view::npos && end > begin)
    return std::string(document.substr(begin, end + tag.size() + 3 - begin));
  return std::string(document.substr(begin, document.find('>', begin) + 1 - begin));
}

std::string Compact(std::string element) {
  for (std::size_t at = 0; (at = element.find('\n', at)) != std::string::npos;)
    element.erase(at, element.find_first_not_of(" \n", at) - at);
  return element;
}

std::string DocumentWith(std::string_view actions, std::string_view program,
                         std::string_view data_sources, std::string_view outputs) {
  std::string document = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<ZAF>";
  const auto append = [&](std::string_view name, std::string_view content) {
    document.append("<").append(name).append(">").append(content);
    document.append("</").append(name).append(">");
  };
  append("Program", program);
  append("Actions", actions);
  append("DataSources", data_sources);
  append("Outputs", outputs);
  return document + "</ZAF>\n";
}

}  // namespace zaf::test
