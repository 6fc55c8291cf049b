#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "appfile/TDifference.h"
#include "tool/Report.h"

namespace zaf {

/// Why an input failed, as far as the outcome of its conversion leaves that open.
enum class Fault : std::uint8_t {
  kMissing,
  kDirectory,
  kRival,
  kOutputDirectory,
  kMemory,
};

TInputError ErrorOf(Fault fault, const TInputRecord& record);

/// The error of a record whose outcome is a failed one. Looks at the input or output again to find
/// out more.
TInputError ErrorOfOutcome(const TInputRecord& record);
/// The same for commands that only read: without what was not written.
TInputError ErrorOfReading(const TInputRecord& record);

/// The words of messages, coloured or not.
enum class Coloring : bool { kOff, kOn };

/// Messages, complete with their line ends.
std::string ErrorMessage(const TInputRecord& record, Coloring coloring);
std::string LossMessage(const TInputRecord& record, const TLoss& loss, Coloring coloring);
std::string InputMessage(const TInputRecord& record);
std::string Summary(const TTotals& totals, FileCommand command, bool has_looked_for_losses);

/// What `zaf diff` prints of a difference: a line, or what follows the name of its subject there,
/// in the bytes of the application's texts. Long values are shortened around where they differ
/// first.
std::string DifferenceMessage(const TDifference& difference, Coloring coloring);
std::string DifferenceText(const TDifference& difference);
std::string_view DifferenceWord(DifferenceKind kind);

/// A name with its control characters as \xNN.
std::string Printable(std::string_view name);

/// A number of bytes with its unit: "4.1 MB".
std::string FormatBytes(double bytes);

}  // namespace zaf
