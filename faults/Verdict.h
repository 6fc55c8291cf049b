#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "faults/Program.h"
#include "faults/Tree.h"

namespace zaf::faults {

/// What a message, or a pair of them about one file, says.
enum class Event : std::uint32_t {
  kCannotOpenInput,
  kCannotRead,
  kOutputExists,
  kCannotWrite,
  kCannotReopen,
  kFailedUnexplained,  ///< A file failed, and no message before says why.
  kUnfinished,         ///< A message why a file failed, and none that it did.
  kNoDirectory,        ///< A directory could not be entered, listed or created.
  kCannotCleanUp,
  kCommandLine,  ///< The run did not begin.
};

/// Takes messages apart. False when there is anything that the program never says.
[[nodiscard]] bool ReadEvents(std::string_view messages, std::vector<Event>& events);

/// What a run without a fault leaves.
struct TExpectation {
  TTree input;
  TTree output_before;
  TTree output;
  std::vector<Event> events;
  std::int64_t live_blocks = 0;
};

enum class Outcome {
  kUnharmed,  ///< Everything was converted.
  kReported,  ///< Something was not, and a message says so.
  kSilent,    ///< A file could not be created, of which the program says nothing.
  kViolation,
};
inline constexpr std::size_t kOutcomeCount = static_cast<std::size_t>(Outcome::kViolation) + 1;

struct TVerdict {
  Outcome outcome;
  std::string complaint;  ///< Of a violation.
};

/// What is found after a run.
struct TFindings {
  TTree input;
  TTree output;
};

/// Judges a run that was to come to its end.
TVerdict JudgeRun(const TExpectation& expected, const TPlan& plan, const TRun& run,
                  const TFindings& found);

/// Judges what a run left that was killed: nothing about messages.
TVerdict JudgeKilled(const TExpectation& expected, const TPlan& plan, const TFindings& found);

/// Whether a path is that of a temporary file of the program.
bool IsTemporary(std::string_view path);

}  // namespace zaf::faults
