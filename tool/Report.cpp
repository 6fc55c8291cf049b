#include "tool/Report.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>

#include "foundation/StandardPaths.h"
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
  if (std::ranges::all_of(text, [](char c) { return (c & 0x80) == 0; })) return true;
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
    if (is_plain)
      encoded += character;
    else
      encoded += Format("%%%02X", static_cast<unsigned char>(character));
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

/// Whether the text is ASCII without quotes, backslashes and control characters, which JSON has
/// unchanged. Examines all of it, so that compilers vectorise the loop.
bool IsPlain(std::string_view text) {
  unsigned char special = 0;
  for (const char c : text) {
    const bool is_ascii = static_cast<unsigned char>(c - ' ') <= '~' - ' ';  // And no control.
    const bool is_special = !is_ascii | (c == '"') | (c == '\\');
    special = static_cast<unsigned char>(special | static_cast<unsigned char>(is_special));
  }
  return special == 0;
}

/// Space for most lines, in bytes: without losses, and for each loss.
constexpr std::size_t kUsualSize = 512;
constexpr std::size_t kUsualLossSize = 256;

/// Builds one line of a report. Texts of plain ASCII are appended unchanged, because a report has
/// many and must not take longer than the conversion.
struct TLine {
  /// Begins a member; the first of an object follows `{`.
  TLine& Key(std::string_view key) {
    return Raw(text.back() == '{' ? "\"" : ",\"").Raw(key).Raw("\":");
  }
  TLine& Raw(std::string_view json) {
    text += json;
    return *this;
  }
  /// A text in UTF-8; what is not UTF-8 becomes U+FFFD.
  TLine& Text(std::string_view value) {
    return IsPlain(value) ? Raw("\"").Raw(value).Raw("\"") : Raw(DumpJson(std::string(value)));
  }
  TLine& TextOrNull(std::string_view value) { return value.empty() ? Raw("null") : Text(value); }
  /// A text in ISO-8859-1.
  TLine& Latin1(std::string_view value) { return Raw("\"").InLatin1(value).Raw("\""); }
  /// A part of a text in ISO-8859-1.
  TLine& InLatin1(std::string_view part) {
    if (IsPlain(part)) return Raw(part);
    const std::string quoted = DumpJson(ToUtf8(part));
    return Raw(std::string_view(quoted).substr(1, quoted.size() - 2));
  }
  TLine& Latin1OrNull(std::string_view value) {
    return value.empty() ? Raw("null") : Latin1(value);
  }
  TLine& Number(std::uint64_t number) {
    std::array<char, 24> digits;
    const char* const end = std::to_chars(digits.begin(), digits.end(), number).ptr;
    return Raw({digits.begin(), end});
  }
  TLine& NumberOrNull(std::uint64_t number) { return number == 0 ? Raw("null") : Number(number); }
  /// The path of an input.
  TLine& Input(const std::string& path) {
    Key("input").Text(path);
    return IsUtf8(path) ? *this : Key("input_raw").Text(PercentEncoded(path));
  }
  /// With six decimal places.
  TLine& Seconds(double seconds) {
    const auto microseconds = static_cast<std::uint64_t>(std::max(0.0, std::round(seconds * 1e6)));
    const std::string places = std::to_string(1000000 + microseconds % 1000000);
    return Number(microseconds / 1000000).Raw(".").Raw(std::string_view(places).substr(1));
  }
  TLine& Section(FourCharCode code) {
    if (code == kNoCode) return Raw("null");
    const std::array<char, 4> characters = Characters(code);
    return Latin1({characters.data(), characters.size()});
  }

  std::string text = "{";
};

void AppendError(const TInputError& error, const TErrorPlace& place, TLine& line) {
  line.Raw("{").Key("code").Text(error.code).Key("text").Text(error.text).Key("offset");
  place.offset ? line.Number(*place.offset) : line.Raw("null");
  line.Key("section").Section(place.section);
  line.Key("action").Latin1OrNull(place.action);
  line.Key("line").NumberOrNull(place.line).Key("column").NumberOrNull(place.column).Raw("}");
}

/// Appends an object. There are many losses, so it takes few pieces.
void AppendLoss(const TLoss& loss, TLine& line) {
  line.Raw(R"({"code":")").Raw(LossWord(loss.code));
  line.Raw(IsLoss(loss.code) ? R"(","level":"loss","text":")" : R"(","level":"note","text":")");
  const std::size_t mark = loss.sentence.find('%');
  line.Raw(loss.sentence.substr(0, mark));
  if (mark != std::string_view::npos)
    line.InLatin1(loss.detail).Raw(loss.sentence.substr(mark + 1));
  line.Raw(R"(","action":)").Latin1OrNull(loss.action).Raw(R"(,"section":)").Section(loss.section);
  if (loss.has_range)
    line.Raw(R"(,"offset":)").Number(loss.offset).Raw(R"(,"length":)").Number(loss.length);
  else
    line.Raw(R"(,"offset":null,"length":null)");
  if (loss.line != 0)
    line.Raw(R"(,"line":)").Number(loss.line).Raw(R"(,"column":)").Number(loss.column).Raw("}");
  else
    line.Raw(R"(,"line":null,"column":null})");
}

/// The raw bytes of an input's base: those at the beginning of the input that a report shows as
/// `reported`.
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
  TLine line;
  line.text.reserve(kUsualSize + record.losses.size() * kUsualLossSize);
  line.Input(record.input.path);
  line.Key("base").Text(record.input.base).Key("output").TextOrNull(record.output);
  line.Key("status").Text(kStatusWords[static_cast<std::size_t>(record.status)]);
  line.Key("form").TextOrNull(result.form ? FormWord(*result.form) : std::string_view());
  line.Key("class_file").Raw(result.is_class_file ? "true" : "false");
  line.Key("bytes_in").Number(result.bytes_in).Key("bytes_out").Number(result.bytes_out);
  line.Key("actions").Number(result.actions).Key("seconds").Seconds(record.seconds);
  line.Key("error");
  record.error ? AppendError(*record.error, result.error_place, line)
               : static_cast<void>(line.Raw("null"));
  line.Key("losses").Raw("[");
  for (const TLoss& loss : record.losses) {
    if (&loss != &record.losses.front()) line.Raw(",");
    AppendLoss(loss, line);
  }
  return std::move(line.Raw("]}\n").text);
}

std::string ReportLine(const TTotals& totals) {
  TLine line;
  line.Key("summary").Raw("{");
  line.Key("inputs").Number(totals.inputs).Key("converted").Number(totals.converted);
  line.Key("checked").Number(totals.checked).Key("skipped").Number(totals.skipped);
  line.Key("failed").Number(totals.failed).Key("with_losses").Number(totals.with_losses);
  line.Key("bytes_in").Number(totals.bytes_in).Key("bytes_out").Number(totals.bytes_out);
  line.Key("seconds").Seconds(totals.seconds).Key("version").Text(kVersion);
  return line.Raw("}}\n").text;
}

std::vector<TFailedInput> ReadFailedInputs(const std::string& report) {
  std::ifstream file;
  if (report != "-") file.open(StreamPath(report), std::ios::binary);
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
  return ordered_json::parse(TLine().Input(path).Raw("}").text);
}

ordered_json LossJson(const TLoss& loss) {
  TLine line{.text = {}};
  AppendLoss(loss, line);
  return ordered_json::parse(line.text);
}

std::string Format(const char* format, ...) {
  std::array<char, 64> text;
  std::va_list arguments;
  va_start(arguments, format);
  // The analyser does not see that va_start sets them.
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized)
  std::vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  return text.data();
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
