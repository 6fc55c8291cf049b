#include "tests/support/Convert.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <set>
#include <stdexcept>

namespace zaf::test {
namespace {

/// The bytes written to a stream.
std::string ContentOf(TDataFile& data) {
  CData content;
  const bool is_read = data.ReadBlock(kNoCode, 0, data.GetSize(), content) == Status::kOk;
  return is_read ? std::string(AsText(content.Bytes())) : std::string();
}

/// Larger documents, which some tests of limits make, are not validated: that would take longer
/// than the tests.
constexpr std::size_t kMostChecked = std::size_t{4} << 20;

/// Validates a document with xmllint, if that is installed; xmllint prints the errors.
bool IsValid(const std::string& document) {
  static const bool has_xmllint = std::system("xmllint --version >/dev/null 2>&1") == 0;
  if (!has_xmllint) return true;
  std::FILE* const lint =
      popen("xmllint --nonet --noout --nowarning --huge --dtdvalid " ZAF2XML_DTD " -", "w");
  std::fwrite(document.data(), 1, document.size(), lint);
  return pclose(lint) == 0;
}

}  // namespace

Status LoadBytes(std::string_view bytes, TZanfoFile& file) {
  TDataFile data(AsBytes(bytes));
  return file.Load(data, nullptr);
}

TLoadedFile::TLoadedFile(std::string_view bytes) {
  if (LoadBytes(bytes, *this) != Status::kOk) throw std::invalid_argument("a file is refused");
}

std::string SaveToXml(TZanfoFile& file, Protection protection) {
  TDataFile data(std::tmpfile());
  if (file.Save(data, nullptr, protection) != Status::kOk) return "save failed";
  std::string document = ContentOf(data);
  static std::set<std::string> valid;  // Many tests write the same documents.
  const bool is_checked = protection == Protection::kPlain && document.size() <= kMostChecked;
  if (!is_checked || valid.contains(document)) return document;
  if (!IsValid(document)) return document + "is not valid";
  valid.insert(document);
  return document;
}

std::string SaveToLegacy(TZanfoFile& file) {
  TDataFile data(std::tmpfile());
  return file.SaveLegacy(data) == Status::kOk ? ContentOf(data) : "save failed";
}

Status ReadSection(TQuerySpecification& action, std::string_view code, std::string_view payload) {
  TDataFile file(AsBytes(payload));
  return action.ReadLegacyProperty(
      {&file, CodeOfText(code), 0, static_cast<std::uint32_t>(payload.size()), &action});
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

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string Expected(std::string_view name) {
  return ReadFile(ZAF2XML_DOCUMENTS "/" + std::string(name) + ".xml");
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
