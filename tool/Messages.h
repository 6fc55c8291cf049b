#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "appfile/TDifference.h"
#include "tool/Report.h"

namespace zaf {

/// Why an input failed, if the outcome of its conversion does not determine that.
enum class Fault : std::uint8_t {
  kMissing,
  kDirectory,
  kRival,
  kOutputDirectory,
  kMemory,
};

TInputError ErrorOf(Fault fault, const TInputRecord& record);

/// The error of a record with a failed outcome. Examines the input or output again to find the
/// cause.
TInputError ErrorOfOutcome(const TInputRecord& record);
/// The same for commands that only read: without what was not written.
TInputError ErrorOfReading(const TInputRecord& record);

/// Whether the keywords of messages are coloured.
enum class Coloring : bool { kOff, kOn };

/// Messages, complete with their line ends.
std::string ErrorMessage(const TInputRecord& record, Coloring coloring);
std::string LossMessage(const TInputRecord& record, const TLoss& loss, Coloring coloring);
std::string InputMessage(const TInputRecord& record);
std::string Summary(const TTotals& totals, FileCommand command, bool has_looked_for_losses);

/// The text that `zaf diff` prints for a difference: a line, or what follows the name of its
/// subject, in ISO-8859-1 like the application's texts. Long values are shortened around their
/// first difference.
std::string DifferenceMessage(const TDifference& difference, Coloring coloring);
std::string DifferenceText(const TDifference& difference);
std::string_view DifferenceWord(DifferenceKind kind);

/// Replaces control characters in a name by \xNN.
std::string Printable(std::string_view name);

/// Formats a number of bytes with its unit: "4.1 MB".
std::string FormatBytes(double bytes);

}  // namespace zaf
