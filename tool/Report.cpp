#include "tool/Report.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>

#include "foundation/Paths.h"
#include "tool/Json.h"
#include "tool/Version.h"

namespace zaf {
namespace {

using nlohmann::ordered_json;

constexpr std::string_view kStatusWords[] = {"converted", "checked", "skipped", "planned",
                                             "failed"};
constexpr std::string_view kFormWords[] = {"legacy", "xml", "protected"};

/// In the order of LossCode.
constexpr std::string_view kLossWords[] = {
    "section-dropped",    "section-unknown",    "section-repeated", "section-malformed",
    "bytes-unreferenced", "record-dropped",     "text-cut",         "value-unknown",
    "character-dropped",  "character-replaced", "line-end-changed", "node-ignored",
    "not-readable",       "not-restored",
};

bool IsUtf8(const std::string& text) {
  try {
    static_cast<void>(ordered_json(text).dump());
    return true;
  } catch (const ordered_json::exception&) {
    return false;
  }
}

std::string PercentEncoded(std::string_view text) {
  std::string encoded;
  for (const char character : text) {
    const bool is_plain = (character >= '0' && character <= '9') ||
                          (character >= 'A' && character <= 'Z') ||
                          (character >= 'a' && character <= 'z') ||
                          std::string_view("-._~/").find(character) != std::string_view::npos;
    std::array<char, 4> code{character};
    if (!is_plain)
      std::snprintf(code.data(), code.size(), "%%%02X", static_cast<unsigned char>(character));
    encoded += code.data();
  }
  return encoded;
}

std::string PercentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned char byte = 0;
    const char* const digits = text.data() + i + 1;
    if (text[i] == '%' && i + 2 < text.size() &&
        std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
      decoded += static_cast<char>(byte);
      i += 2;
    } else {
      decoded += text[i];
    }
  }
  return decoded;
}

ordered_json OrNull(std::uint32_t number) {
  return number == 0 ? ordered_json() : ordered_json(number);
}

ordered_json SectionOf(FourCharCode code) {
  if (code == kNoCode) return {};
  const std::array<char, 4> characters = Characters(code);
  return ToUtf8({characters.data(), characters.size()});
}

double InMicroseconds(double seconds) { return std::round(seconds * 1e6) / 1e6; }

ordered_json ErrorOf(const TInputError& error, const TErrorPlace& place) {
  return {{"code", error.code},
          {"text", error.text},
          {"offset", place.offset ? ordered_json(*place.offset) : ordered_json()},
          {"section", SectionOf(place.section)},
          {"action", TextOrNull(ToUtf8(place.action))},
          {"line", OrNull(place.line)},
          {"column", OrNull(place.column)}};
}

/// The bytes of the base of an input: those at the beginning of the input that a report shows so.
std::string RawBase(const std::string& path, const std::string& reported) {
  for (std::size_t size = path.size(); size > 0; --size)
    if (std::string base = path.substr(0, size); ordered_json::parse(DumpJson(base)) == reported)
      return base;
  return path;
}

TFailedInput FailedInputOf(const ordered_json& object) {
  TFailedInput failed{object.at("input"), object.at("base")};
  if (const auto raw = object.find("input_raw"); raw != object.end()) {
    failed.path = PercentDecoded(raw->get<std::string>());
    failed.base = RawBase(failed.path, failed.base);
  }
  if (!failed.path.starts_with(failed.base)) failed.base = failed.path;
  return failed;
}

}  // namespace

bool TInputRecord::HasLosses() const {
  return std::ranges::any_of(losses, [](const TLoss& loss) { return IsLoss(loss.code); });
}

void TTotals::Add(const TInputRecord& record) {
  ++inputs;
  if (record.status == InputStatus::kPlanned) return;
  converted += record.status == InputStatus::kConverted ? 1U : 0U;
  checked += record.status == InputStatus::kChecked ? 1U : 0U;
  skipped += record.status == InputStatus::kSkipped ? 1U : 0U;
  failed += record.status == InputStatus::kFailed ? 1U : 0U;
  with_losses += record.HasLosses() ? 1U : 0U;
  bytes_in += record.result.bytes_in;
  bytes_out += record.result.bytes_out;
}

std::string ReportLine(const TInputRecord& record) {
  const TFileResult& result = record.result;
  ordered_json object = InputJson(record.input.path);
  object["base"] = record.input.base;
  object["output"] = TextOrNull(record.output);
  object["status"] = kStatusWords[static_cast<std::size_t>(record.status)];
  object["form"] = result.form ? ordered_json(FormWord(*result.form)) : ordered_json();
  object["class_file"] = result.is_class_file;
  object["bytes_in"] = result.bytes_in;
  object["bytes_out"] = result.bytes_out;
  object["actions"] = result.actions;
  object["seconds"] = InMicroseconds(record.seconds);
  object["error"] = record.error ? ErrorOf(*record.error, result.error_place) : ordered_json();
  ordered_json& losses = object["losses"] = ordered_json::array();
  for (const TLoss& loss : record.losses) losses.push_back(LossJson(loss));
  return DumpJson(object) + "\n";
}

std::string ReportLine(const TTotals& totals) {
  const ordered_json object{{"summary",
                             {{"inputs", totals.inputs},
                              {"converted", totals.converted},
                              {"checked", totals.checked},
                              {"skipped", totals.skipped},
                              {"failed", totals.failed},
                              {"with_losses", totals.with_losses},
                              {"bytes_in", totals.bytes_in},
                              {"bytes_out", totals.bytes_out},
                              {"seconds", InMicroseconds(totals.seconds)},
                              {"version", kVersion}}}};
  return DumpJson(object) + "\n";
}

std::vector<TFailedInput> ReadFailedInputs(const std::string& report) {
  std::ifstream file;
  if (report != "-") file.open(ToPath(report), std::ios::binary);
  std::istream& lines = report == "-" ? std::cin : file;
  std::vector<TFailedInput> failed;
  try {
    for (std::string line; std::getline(lines, line);) {
      const ordered_json object = ordered_json::parse(line);
      if (!object.contains("summary") && object.at("status") == "failed")
        failed.push_back(FailedInputOf(object));
    }
  } catch (const ordered_json::exception&) {
    throw TToolError(ExitStatus::kUsage, report + " is not a report of this program");
  }
  if (!lines.eof())
    throw TToolError(ExitStatus::kUsage, "The report " + report + " cannot be read");
  return failed;
}

std::string_view LossWord(LossCode code) { return kLossWords[static_cast<std::size_t>(code)]; }

std::string_view FormWord(DocumentForm form) { return kFormWords[static_cast<std::size_t>(form)]; }

std::string DumpJson(const ordered_json& value) {
  return value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

ordered_json TextOrNull(const std::string& text) {
  return text.empty() ? ordered_json() : ordered_json(text);
}

ordered_json InputJson(const std::string& path) {
  ordered_json object{{"input", path}};
  if (!IsUtf8(path)) object["input_raw"] = PercentEncoded(path);
  return object;
}

ordered_json LossJson(const TLoss& loss) {
  return {{"code", LossWord(loss.code)},
          {"level", IsLoss(loss.code) ? "loss" : "note"},
          {"text", ToUtf8(loss.text)},
          {"action", TextOrNull(ToUtf8(loss.action))},
          {"section", SectionOf(loss.section)},
          {"offset", loss.has_range ? ordered_json(loss.offset) : ordered_json()},
          {"length", loss.has_range ? ordered_json(loss.length) : ordered_json()},
          {"line", OrNull(loss.line)},
          {"column", OrNull(loss.column)}};
}

std::string ToUtf8(std::string_view latin1) {
  std::string text;
  text.reserve(latin1.size());
  for (const char character : latin1) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= 0x80) text += static_cast<char>(0xC0 | byte >> 6);
    text += byte >= 0x80 ? static_cast<char>(0x80 | (byte & 0x3F)) : character;
  }
  return text;
}

}  // namespace zaf
