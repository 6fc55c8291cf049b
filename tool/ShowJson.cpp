#include <algorithm>
#include <map>
#include <string_view>
#include <unordered_map>

#include "tool/Json.h"
#include "tool/Show.h"
#include "tool/ShowPage.h"

namespace zaf {
namespace {

using nlohmann::ordered_json;

constexpr std::string_view kDataPlace = "@DATA@";
constexpr std::string_view kImagePlace = "@IMAGE@";

/// The properties of the file as a whole.
ordered_json FileJson(const TShownFile& file) {
  const TFileResult& result = file.record.result;
  ordered_json object = InputJson(file.record.input.path);
  object["form"] = FormWord(*result.form);
  object["version"] = file.version;
  object["class_file"] = result.is_class_file;
  object["title"] = file.title;
  object["author"] = file.author;
  object["revision"] = file.revision;
  object["counts"] = {{"actions", result.actions},
                      {"data_sources", file.data_sources},
                      {"outputs", file.outputs},
                      {"bytes", result.bytes_in}};
  return object;
}

/// Texts, each once, in the order of their first use.
class TStringTable {
 public:
  std::size_t IndexOf(const std::string& text) {
    const auto [place, is_new] = indices_.try_emplace(text, texts_.size());
    if (is_new) texts_.push_back(text);
    return place->second;
  }
  [[nodiscard]] const ordered_json& GetTexts() const { return texts_; }

 private:
  std::unordered_map<std::string, std::size_t> indices_;
  ordered_json texts_ = ordered_json::array();
};

/// The file's bytes in base 64. Before that, runs of NULs are replaced by one NUL and their number.
std::string Packed(std::string_view image) {
  std::string packed;
  for (std::size_t i = 0; i < image.size();) {
    packed += image[i];
    if (image[i++] != '\0') continue;
    const std::size_t end = std::min(image.find_first_not_of('\0', i), image.size());
    const std::size_t count = std::min<std::size_t>(end - i + 1, 255);
    packed += static_cast<char>(count);
    i += count - 1;
  }
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve(packed.size() / 3 * 4 + 4);
  for (std::size_t i = 0; i < packed.size(); i += 3) {
    std::uint32_t bits = 0;
    for (std::size_t j = i; j < i + 3; ++j)
      bits = bits << 8 | (j < packed.size() ? static_cast<unsigned char>(packed[j]) : 0U);
    for (std::size_t j = 0; j < 4; ++j)
      text += i + j > packed.size() ? '=' : kDigits[bits >> (18 - 6 * j) & 63];
  }
  return text;
}

/// The data of the page, with most texts as indices into a table.
ordered_json PageData(const TShownFile& file) {
  TStringTable strings;
  ordered_json data{{"file", FileJson(file)}};
  const std::string& path = file.record.input.path;
  data["file"]["name"] = path.substr(path.find_last_of("/\\") + 1);
  ordered_json& actions = data["actions"] = ordered_json::array();
  for (const TShownAction& action : file.actions)
    actions.push_back({action.name, strings.IndexOf(action.kind), strings.IndexOf(action.element),
                       action.parent, action.detail});
  ordered_json& sections = data["sections"] = ordered_json::array();
  for (const TShownSection& section : file.sections)
    sections.push_back({section.offset, section.length, strings.IndexOf(section.code),
                        section.action + 1, strings.IndexOf(section.field), section.value});
  ordered_json& ranges = data["bytes"] = ordered_json::array();
  for (const TShownRange& range : file.ranges) ranges.push_back({range.length, range.use});
  // A loss belongs to the node with its section, or with its name.
  std::map<std::pair<std::uint64_t, std::string>, std::int64_t> owners;
  for (const TShownSection& section : file.sections)
    owners[{section.offset, section.owner}] = section.action + 1;
  std::unordered_map<std::string, std::int64_t> nodes;
  for (std::size_t i = file.actions.size(); i > 0; --i)
    nodes[file.actions[i - 1].name] = static_cast<std::int64_t>(i);
  ordered_json& losses = data["losses"] = ordered_json::array();
  for (const TLoss& loss : file.record.losses) {
    losses.push_back(LossJson(loss));
    const std::string name = ToUtf8(loss.action);
    const auto owner = owners.find({loss.offset, name});
    const auto node = nodes.find(name);
    losses.back()["node"] = loss.has_range && owner != owners.end()      ? owner->second
                            : loss.action.empty() || node == nodes.end() ? 0
                                                                         : node->second;
  }
  data["strings"] = strings.GetTexts();
  return data;
}

}  // namespace

std::string JsonView(const TShownFile& file) {
  ordered_json object = FileJson(file);
  ordered_json& actions = object["actions"] = ordered_json::array();
  for (const TShownAction& action : file.actions)
    actions.push_back(
        {{"name", action.name},
         {"kind", action.kind},
         {"element", action.element},
         {"parent", action.parent < 0
                        ? ordered_json()
                        : ordered_json(file.actions[static_cast<std::size_t>(action.parent)].name)},
         {"depth", action.depth}});
  if (*file.record.result.form == DocumentForm::kLegacy) {
    ordered_json& sections = object["sections"] = ordered_json::array();
    for (const TShownSection& section : file.sections)
      sections.push_back({{"offset", section.offset},
                          {"length", section.length},
                          {"code", section.code},
                          {"action", TextOrNull(section.owner)},
                          {"field", TextOrNull(section.field)},
                          {"value", section.value}});
    ordered_json& ranges = object["bytes"] = ordered_json::array();
    for (const TShownRange& range : file.ranges)
      ranges.push_back({{"offset", range.offset},
                        {"length", range.length},
                        {"class", kUseWords[range.use]},
                        {"what", range.what}});
  }
  ordered_json& losses = object["losses"] = ordered_json::array();
  for (const TLoss& loss : file.record.losses) losses.push_back(LossJson(loss));
  return DumpJson(object) + "\n";
}

std::string HtmlView(const TShownFile& file) {
  std::string page(kPage);
  std::string data;
  for (const char character : DumpJson(PageData(file)))  // So that no text can end the element.
    if (character == '<')
      data += "\\u003c";
    else
      data += character;
  page.replace(page.find(kImagePlace), kImagePlace.size(), Packed(file.image));
  return page.replace(page.find(kDataPlace), kDataPlace.size(), data);
}

}  // namespace zaf
