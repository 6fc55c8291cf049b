#include "faults/Verdict.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <iterator>
#include <optional>
#include <set>
#include <sys/wait.h>

#include "driver/Messages.h"

namespace zaf::faults {
namespace {

using namespace messages;

struct TMeaning {
  std::string_view text;
  Event event;
};

/// The messages that explain why a file failed; another one follows each.
constexpr TMeaning kExplanations[] = {
    {kCannotOpenInput, Event::kCannotOpenInput},
    {kCannotRead,      Event::kCannotRead     },
    {kOutputExists,    Event::kOutputExists   },
    {kCannotWrite,     Event::kCannotWrite    },
    {kCannotReopen,    Event::kCannotReopen   },
};

constexpr TMeaning kOthers[] = {
    {kNoInputSubdirectory,        Event::kNoDirectory  },
    {kCannotListDirectory,        Event::kNoDirectory  },
    {kCannotCreateDirectory,      Event::kNoDirectory  },
    {kCannotCleanUp,              Event::kCannotCleanUp},
    {kNoInputDirectory,           Event::kCommandLine  },
    {kBadExtension,               Event::kCommandLine  },
    {kBadSuffix,                  Event::kCommandLine  },
    {kBadInputName,               Event::kCommandLine  },
    {kBadOutputName,              Event::kCommandLine  },
    {kBadInput,                   Event::kCommandLine  },
    {kBadOutput,                  Event::kCommandLine  },
    {kNoWorkingDirectory,         Event::kCommandLine  },
    {kBadCommandLine,             Event::kCommandLine  },
    {kOutputNameWithoutInputName, Event::kCommandLine  },
    {kSameDirectory,              Event::kCommandLine  },
    {kMismatchedQuotes,           Event::kCommandLine  },
    {kUnwrappedSpaces,            Event::kCommandLine  },
};

/// Takes one of the messages off the front.
template <std::size_t count>
std::optional<Event> TakeEvent(const TMeaning (&meanings)[count], std::string_view& messages) {
  for (const TMeaning& meaning : meanings) {
    if (!messages.starts_with(meaning.text)) continue;
    messages.remove_prefix(meaning.text.size());
    return meaning.event;
  }
  return std::nullopt;
}

bool TakeFailure(std::string_view& messages) {
  for (const std::string_view text : {kFileFailed, kSingleFileFailed}) {
    if (!messages.starts_with(text)) continue;
    messages.remove_prefix(text.size());
    return true;
  }
  return false;
}

std::vector<Event> Minus(const std::vector<Event>& from, const std::vector<Event>& what) {
  std::vector<Event> result;
  std::ranges::set_difference(from, what, std::back_inserter(result));
  return result;
}

TVerdict Violation(std::string complaint) { return {Outcome::kViolation, std::move(complaint)}; }

/// Whether a temporary file may be left: when it could not be removed, or nobody lived to do it.
bool MayLeaveTemporary(const TPlan& plan) {
  const bool is_killed = plan.action == Action::kKill || plan.action == Action::kKillAfter;
  return plan.action == Action::kMove || plan.call == Call::kUnlink ||
         (is_killed && plan.machine != Machine::kUsual);
}

/// What is wrong with the output directory whatever happened: anything that changed, is not whole
/// or should not be there. Gives the files that are missing.
std::string CheckOutput(const TExpectation& expected, const TPlan& plan, const TTree& output,
                        std::set<std::string>& missing) {
  for (const auto& [path, entry] : expected.output_before) {
    const auto place = output.find(path);
    if (place == output.end() || place->second != entry)
      return path + " was there before and is not as it was";
  }
  for (const auto& [path, entry] : output) {
    const auto place = expected.output.find(path);
    if (place != expected.output.end()) {
      if (place->second == entry) continue;
      return path + " is wrong: it has " + std::to_string(entry.size() - 1) + " bytes of " +
             std::to_string(place->second.size() - 1);
    }
    // A mirrored directory may be left when it cannot be removed or nobody lives to do it.
    const bool is_mirrored = entry == DirectoryEntry() && expected.input.contains(path);
    if (!is_mirrored && !(IsTemporary(path) && MayLeaveTemporary(plan)))
      return path + " was left behind";
  }
  for (const auto& [path, entry] : expected.output)
    if (IsFileEntry(entry) && !output.contains(path)) missing.insert(path);
  return {};
}

/// Judges what one fault that happened once did to files and messages.
TVerdict JudgeSingleFault(const TExpectation& expected, const TRun& run,
                          const std::vector<Event>& events, const std::set<std::string>& missing) {
  const std::vector<Event> gained = Minus(events, expected.events);
  const std::vector<Event> lost = Minus(expected.events, events);
  if (gained.empty() && lost.empty() && missing.empty()) return {Outcome::kUnharmed, {}};
  // Messages that cannot leave the program.
  if (run.report.struck_call == Call::kStreamWrite && missing.empty())
    return {Outcome::kUnharmed, {}};
  if (gained.empty()) {
    const bool is_of_creation = run.report.is_creation && missing.size() == 1 && lost.empty();
    // What stands there cannot be seen; creating the file is then refused, silently.
    const bool is_of_existing =
        missing.empty() && lost == std::vector<Event>{Event::kOutputExists} &&
        (run.report.struck_call == Call::kOpen || run.report.struck_call == Call::kStat);
    if (is_of_creation || is_of_existing) return {Outcome::kSilent, {}};
    return Violation(std::to_string(missing.size()) + " files are missing and " +
                     std::to_string(lost.size()) + " messages, and nothing says why");
  }
  // A level that ends early counts as one without attempts, whose directory is not wanted.
  if (gained == std::vector{Event::kNoDirectory, Event::kCannotCleanUp})
    return {Outcome::kReported, {}};
  if (gained.size() != 1) return Violation("one fault made more than one message");
  switch (gained.front()) {
    case Event::kCommandLine:
    case Event::kNoDirectory:
      return {Outcome::kReported, {}};
    case Event::kCannotCleanUp:
      if (missing.empty() && lost.empty()) return {Outcome::kReported, {}};
      return Violation("more was lost than a directory that could not be removed");
    case Event::kFailedUnexplained:
    case Event::kUnfinished:
      return Violation("a file failed without the message that says why");
    default:
      if (missing.size() <= 1 && lost.size() <= 1) return {Outcome::kReported, {}};
      return Violation("one file was reported, and more are missing");
  }
}

/// Judges what a fault that stayed did.
TVerdict JudgeLastingFault(const TExpectation& expected, const TPlan& plan,
                           const std::vector<Event>& events, const std::set<std::string>& missing) {
  const std::vector<Event> gained = Minus(events, expected.events);
  if (gained.empty() && missing.empty()) return {Outcome::kUnharmed, {}};
  const bool is_general = std::ranges::any_of(gained, [](Event event) {
    return event == Event::kCommandLine || event == Event::kNoDirectory;
  });
  if (is_general || gained.size() >= missing.size()) return {Outcome::kReported, {}};
  // Outputs that cannot even be created go without a word.
  if (plan.call != Call::kAllocation) return {Outcome::kSilent, {}};
  return Violation(std::to_string(missing.size()) + " files are missing, and there are only " +
                   std::to_string(gained.size()) + " messages");
}

/// What is wrong with how the program ended.
std::string CheckEnd(const TRun& run) {
  if (run.is_stuck) return "it did not come to an end";
  if (WIFSIGNALED(run.status))
    return "it was ended by signal " + std::to_string(WTERMSIG(run.status)) + " " + run.messages;
  if (WEXITSTATUS(run.status) != 0)
    return "its exit status was " + std::to_string(WEXITSTATUS(run.status)) + " " + run.messages;
  if (!run.report.has_reached_main) return "it did not start";
  return {};
}

}  // namespace

bool IsTemporary(std::string_view path) {
  const std::string_view name = path.substr(path.rfind('/') + 1);
  return name.starts_with(".Zaf2Xml-") && name.ends_with(".tmp");
}

bool ReadEvents(std::string_view messages, std::vector<Event>& events) {
  while (!messages.empty()) {
    if (const std::optional<Event> explained = TakeEvent(kExplanations, messages)) {
      events.push_back(TakeFailure(messages) ? *explained : Event::kUnfinished);
    } else if (TakeFailure(messages)) {
      events.push_back(Event::kFailedUnexplained);
    } else if (const std::optional<Event> other = TakeEvent(kOthers, messages)) {
      events.push_back(*other);
    } else {
      return false;
    }
  }
  std::ranges::sort(events);
  return true;
}

TVerdict JudgeRun(const TExpectation& expected, const TPlan& plan, const TRun& run,
                  const TFindings& found) {
  if (std::string complaint = CheckEnd(run); !complaint.empty())
    return Violation(std::move(complaint));
  if (run.report.has_strayed) return Violation("it wrote outside the output directory");
  if (found.input != expected.input) return Violation("the input directory has changed");
  std::set<std::string> missing;
  if (std::string complaint = CheckOutput(expected, plan, found.output, missing);
      !complaint.empty())
    return Violation(std::move(complaint));
  // Objects whose destruction could not be registered live to the end of the process.
  if (run.report.live_blocks > expected.live_blocks && !run.report.is_of_registration)
    return Violation(std::to_string(run.report.live_blocks - expected.live_blocks) +
                     " blocks of memory were not freed");
  std::vector<Event> events;
  if (!ReadEvents(run.messages, events)) return Violation("it said: " + run.messages);
  const bool is_single =
      plan.extent == Extent::kOnce && plan.number != 0 && plan.action != Action::kMove;
  return is_single ? JudgeSingleFault(expected, run, events, missing)
                   : JudgeLastingFault(expected, plan, events, missing);
}

TVerdict JudgeKilled(const TExpectation& expected, const TPlan& plan, const TFindings& found) {
  if (found.input != expected.input) return Violation("the input directory has changed");
  std::set<std::string> missing;
  if (std::string complaint = CheckOutput(expected, plan, found.output, missing);
      !complaint.empty())
    return Violation(std::move(complaint));
  return {missing.empty() ? Outcome::kUnharmed : Outcome::kReported, {}};
}

}  // namespace zaf::faults
