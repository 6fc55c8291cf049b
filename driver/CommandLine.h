#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "driver/ConversionOptions.h"
#include "driver/Messages.h"

namespace zaf {

/// The arguments of the program, its own name first.
using Arguments = std::span<const char* const>;

/// What NormaliseParameter made of an argument.
enum class ParameterForm {
  kInvalid = 0,  ///< Its quotes do not match; a message said so.
  kJoined = 1,   ///< The value was joined from several arguments.
  kSingle = 2,   ///< The value is the one argument.
};

/// Takes the value at `arguments[index]`. A value with blanks stands in single quotes and comes in
/// as several arguments: they are joined with one blank each, without the quotes, and `index` is
/// moved to the last of them. `value` is set unless the result is kInvalid.
ParameterForm NormaliseParameter(Arguments arguments, std::size_t& index, const MessageSink& report,
                                 CText& value);

/// Turns the arguments into options; none when the program is to stop, having said why. Enters the
/// input directory, if one is named, and then the output directory, each as soon as it is read: a
/// relative output directory counts from the input directory. When memory runs out there are no
/// options.
std::optional<ConversionOptions> ParseCommandLine(Arguments arguments, const MessageSink& report);

}  // namespace zaf
