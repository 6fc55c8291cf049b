#include "tool/Messages.h"

#include <algorithm>
#include <limits>

#include "foundation/Paths.h"

namespace zaf {
namespace {

/// A code and its sentence: what was found, what was expected and what was done. `{}` is replaced
/// by the output.
struct TSentence {
  std::string_view code;  ///< Empty: the status is used.
  std::string_view text;
};

constexpr TSentence kNotFound{"not-found", "There is no such file or directory; it was left out"};
constexpr TSentence kDirectory{"list", "The directory cannot be listed; its files were left out"};
constexpr TSentence kNoFile{"no-file", "An application is a regular file; this one was left out"};
constexpr TSentence kEmpty{"empty", "The file is empty; it was left out"};
constexpr TSentence kTooLarge{"too-large",
                              "Only files of less than 4 GiB are read; it was left out"};
constexpr TSentence kNotOpened{"open", "The file cannot be opened and read; it was left out"};
constexpr TSentence kMalformed{
    {}, "The content contradicts itself or names what is not there; nothing was written"};
constexpr TSentence kCutOff{
    {}, "The file ends before something that it refers to, or memory ran out; nothing was written"};
constexpr TSentence kNotRead{{}, "The file cannot be read as an application; nothing was written"};
constexpr TSentence kExists{"exists", "The output {} exists already; it was left as it is"};
constexpr TSentence kIsInput{"exists", "The output {} is the input itself; it was left as it is"};
constexpr TSentence kRival{"exists", "The output {} is also that of an earlier input, "};
constexpr TSentence kNotCreated{"create", "The output {} cannot be created; nothing was written"};
constexpr TSentence kNotReplaced{"create",
                                 "The output {} cannot be replaced; it was left as it is"};
constexpr TSentence kNotStored{
    "write", "The output {} cannot be stored, as if the disk were full; nothing of it was kept"};
constexpr TSentence kNotSaved{
    {}, "The application cannot be written in the form that is asked for; nothing was written"};
constexpr TSentence kTimeNotKept{
    "time", "The output {} was written, but cannot get the time stamp of the input"};
constexpr TSentence kNotReopened{"reopen", "The output {} cannot be opened again to verify it"};
constexpr TSentence kRefused{{}, "What was written is refused when it is read back"};
constexpr TSentence kMemory{"memory", "Memory ran out; nothing was written"};

TInputError Fill(const TSentence& sentence, const TInputRecord& record) {
  TInputError error{std::string(sentence.code), std::string(sentence.text)};
  if (error.code.empty())
    error.code = Format("0x%04X", static_cast<unsigned>(record.result.status));
  if (const std::size_t place = error.text.find("{}"); place != std::string::npos)
    error.text.replace(place, 2, record.output);
  return error;
}

TSentence SentenceOfUnopened(const std::string& path) {
  const TPathInfo info = LookAt(path);
  if (info.kind == PathKind::kNothing) return kNotFound;
  if (info.kind == PathKind::kUnknown) return kNotOpened;
  if (info.kind != PathKind::kFile) return kNoFile;
  if (info.size == 0) return kEmpty;
  return info.size > std::numeric_limits<std::uint32_t>::max() ? kTooLarge : kNotOpened;
}

TSentence SentenceOf(const TInputRecord& record) {
  switch (record.result.outcome) {
    case FileOutcome::kInputNotOpened:
      return SentenceOfUnopened(record.input.path);
    case FileOutcome::kInputNotRead:
      if (record.result.status == Status::kMalformed) return kMalformed;
      return record.result.status == Status::kFailure ? kCutOff : kNotRead;
    case FileOutcome::kOutputExists:
      return AreSame(record.input.path, record.output) ? kIsInput : kExists;
    case FileOutcome::kOutputNotCreated:
      if (record.result.is_replaced) return kNotReplaced;
      return IsThere(record.output) ? kExists : kNotCreated;
    case FileOutcome::kOutputRefused:
      return kNotCreated;
    case FileOutcome::kOutputNotWritten:
      return record.result.is_disk_failure ? kNotStored : kNotSaved;
    case FileOutcome::kTimeNotKept:
      return kTimeNotKept;
    case FileOutcome::kOutputNotOpened:
      return kNotReopened;
    case FileOutcome::kOutputNotRead:
    case FileOutcome::kConverted:
    case FileOutcome::kSkipped:
      break;
  }
  return kRefused;
}

std::string Word(const std::string& word, const char* color, Coloring coloring) {
  if (coloring == Coloring::kOff) return word;
  return std::string("\x1b[") + color + "m" + word + "\x1b[0m";
}

/// A place in a legacy file, in the form in which messages show it after the code.
std::string PlaceText(const std::optional<std::uint64_t>& offset, FourCharCode section,
                      const std::string& action) {
  std::string text;
  if (offset) text += Format(" at +0x%llX", static_cast<unsigned long long>(*offset));
  if (section != kNoCode) text += ", section '" + Printable(ToUtf8(TextOf(section))) + "'";
  if (!action.empty())
    text +=
        (section != kNoCode ? " of action \"" : ", action \"") + Printable(ToUtf8(action)) + "\"";
  return text;
}

std::string Located(const std::string& path, std::uint32_t line, std::uint32_t column) {
  std::string text = Printable(path) + ":";
  if (line != 0) text += std::to_string(line) + ":" + std::to_string(column) + ":";
  return text + " ";
}

/// Removes NULs at the end of a value and reduces other runs of NULs to one.
std::optional<std::string> WithoutPadding(std::optional<std::string_view> value) {
  if (!value) return std::nullopt;
  std::string text;
  std::string_view rest = value->substr(0, value->find_last_not_of('\0') + 1);
  for (std::size_t end = rest.find('\0'); end != std::string_view::npos; end = rest.find('\0')) {
    text.append(rest.substr(0, end + 1));
    rest.remove_prefix(rest.find_first_not_of('\0', end));
  }
  return text.append(rest);
}

/// Two values in quotes. A short one is complete; of a long one, the part around the first
/// difference is given. A missing one stays empty.
std::pair<std::string, std::string> ShortenValues(std::optional<std::string_view> one,
                                                  std::optional<std::string_view> two) {
  constexpr std::size_t kMost = 60;
  constexpr std::size_t kBefore = 20;
  const std::string_view first = one.value_or(std::string_view());
  const std::string_view second = two.value_or(std::string_view());
  const auto differ =
      static_cast<std::size_t>(std::ranges::mismatch(first, second).in1 - first.begin());
  const auto shorten = [&](std::optional<std::string_view> value) -> std::string {
    if (!value) return {};
    if (value->size() <= kMost) return "\"" + std::string(*value) + "\"";
    const std::size_t begin = std::min(std::max(differ, kBefore) - kBefore, value->size() - kMost);
    const bool is_to_end = begin + kMost == value->size();
    return (begin > 0 ? "...\"" : "\"") + std::string(value->substr(begin, kMost)) +
           (is_to_end ? "\"" : "\"...");
  };
  return {shorten(one), shorten(two)};
}

}  // namespace

TInputError ErrorOf(Fault fault, const TInputRecord& record) {
  constexpr TSentence kSentences[] = {kNotFound, kDirectory, kRival, kNotCreated, kMemory};
  TInputError error = Fill(kSentences[static_cast<std::size_t>(fault)], record);
  if (fault == Fault::kRival) error.text += record.input.rival + "; this one was not converted";
  return error;
}

TInputError ErrorOfOutcome(const TInputRecord& record) {
  TInputError error = Fill(SentenceOf(record), record);
  const std::string_view reason = record.result.error_place.reason;
  const bool is_refused = record.result.outcome == FileOutcome::kInputNotRead ||
                          record.result.outcome == FileOutcome::kOutputNotWritten;
  if (is_refused && !reason.empty())
    error.text = std::string(reason) + "; nothing was written";
  else if (record.result.outcome == FileOutcome::kOutputNotRead && !reason.empty())
    error.text += ": " + std::string(reason);
  return error;
}

TInputError ErrorOfReading(const TInputRecord& record) {
  TInputError error = ErrorOfOutcome(record);
  error.text.resize(std::min(error.text.size(), error.text.rfind("; ")));
  return error;
}

std::string ErrorMessage(const TInputRecord& record, Coloring coloring) {
  const TErrorPlace& place = record.result.error_place;
  std::string text = Located(record.input.path, place.line, place.column);
  text += Word("error", "1;31", coloring) + ": " + Printable(record.error->text) + " (";
  return text + record.error->code + PlaceText(place.offset, place.section, place.action) + ")\n";
}

std::string LossMessage(const TInputRecord& record, const TLoss& loss, Coloring coloring) {
  std::string text = Located(record.input.path, loss.line, loss.column);
  text += IsLoss(loss.code) ? Word("loss", "1;33", coloring) : Word("note", "1;36", coloring);
  text += ": " + Printable(ToUtf8(loss.GetText())) + " (";
  text += LossWord(loss.code);
  const auto offset = loss.has_range ? std::optional(loss.offset) : std::nullopt;
  return text + PlaceText(offset, loss.section, loss.action) + ")\n";
}

std::string InputMessage(const TInputRecord& record) {
  std::string text = Printable(record.input.path) + ": ";
  const std::string output = Printable(record.output);
  switch (record.status) {
    case InputStatus::kConverted:
      return text + "converted to " + output + "\n";
    case InputStatus::kChecked:
      return text + "checked\n";
    case InputStatus::kSkipped:
      return text + "skipped: " + output + " exists\n";
    case InputStatus::kFailed:
      if (!record.error) return text + "failed for its losses\n";
      break;
    case InputStatus::kPlanned:
      break;
  }
  return {};
}

std::string Summary(const TTotals& totals, FileCommand command, bool has_looked_for_losses) {
  std::string text = command == FileCommand::kCheck
                         ? std::to_string(totals.checked) + " checked, "
                         : std::to_string(totals.converted) + " converted, ";
  text +=
      std::to_string(totals.failed) + " failed, " + std::to_string(totals.skipped) + " skipped, ";
  if (has_looked_for_losses) text += std::to_string(totals.with_losses) + " with losses, ";
  return text + FormatBytes(static_cast<double>(totals.bytes_in)) +
         Format(" in %.1f s\n", totals.seconds);
}

std::string DifferenceMessage(const TDifference& difference, Coloring coloring) {
  return Word(Printable(ToUtf8(difference.subject)), "1", coloring) + ": " +
         Printable(ToUtf8(DifferenceText(difference))) + "\n";
}

std::string DifferenceText(const TDifference& difference) {
  const bool is_section = difference.field.starts_with('\'');
  const auto [from, to] =
      is_section ? ShortenValues(WithoutPadding(difference.from), WithoutPadding(difference.to))
                 : ShortenValues(difference.from, difference.to);
  const auto name = [](std::string_view before, const std::string& quoted, std::string_view none) {
    return quoted.empty() ? std::string(none) : std::string(before) + quoted;
  };
  switch (difference.kind) {
    case DifferenceKind::kMoved:
      return "moved: " + name("below ", from, "at the top") + " -> " +
             name("below ", to, "at the top");
    case DifferenceKind::kReordered:
      return "reordered: " + name("after ", from, "first") + " -> " + name("after ", to, "first");
    default:
      break;
  }
  std::string text(difference.field);
  if (!text.empty()) text += ": ";
  if (difference.kind != DifferenceKind::kChanged)
    return text.append(DifferenceWord(difference.kind)) + " " + from + to;
  return from.empty() ? "differs in what has no form" : text + from + " -> " + to;
}

std::string_view DifferenceWord(DifferenceKind kind) {
  constexpr std::string_view kWords[] = {"changed", "added", "removed", "moved", "reordered"};
  return kWords[static_cast<std::size_t>(kind)];
}

std::string Printable(std::string_view name) {
  std::string text;
  text.reserve(name.size());
  bool is_after_c2 = false;  // In UTF-8 the control characters from 0x80 to 0x9F follow this byte.
  for (const char character : name) {
    const auto byte = static_cast<unsigned char>(character);
    const bool is_upper_control = is_after_c2 && byte < 0xA0;
    if (is_upper_control) text.pop_back();
    if (byte < 0x20 || byte == 0x7F || is_upper_control) {
      if (is_upper_control) text += "\\xC2";
      text += Format("\\x%02X", byte);
    } else {
      text += character;
    }
    is_after_c2 = byte == 0xC2;
  }
  return text;
}

std::string FormatBytes(double bytes) {
  constexpr const char* kUnits[] = {"KB", "MB", "GB", "TB"};
  constexpr double kStep = 1000;
  std::size_t unit = 0;
  for (bytes /= kStep; bytes >= kStep && unit + 1 < std::size(kUnits); ++unit) bytes /= kStep;
  return Format("%.1f %s", bytes, kUnits[unit]);
}

}  // namespace zaf
