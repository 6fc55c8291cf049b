#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "driver/ConversionOptions.h"
#include "driver/Messages.h"

namespace zaf {

/// The arguments of the program, starting with its name.
using Arguments = std::span<const char* const>;

/// The result of NormaliseParameter.
enum class ParameterForm {
  kInvalid = 0,  ///< Its quotes do not match; a message was reported.
  kJoined = 1,   ///< The value was joined from several arguments.
  kSingle = 2,   ///< The value is a single argument.
};

/// Reads the value at `arguments[index]`. A value with blanks is in single quotes and consists of
/// several arguments: they are joined with one blank each, without the quotes, and `index` is moved
/// to the last of them. `value` is set unless the result is kInvalid.
ParameterForm NormaliseParameter(Arguments arguments, std::size_t& index, const MessageSink& report,
                                 CText& value);

/// Parses the arguments; none, after a message, when the program must stop. Enters the input
/// directory, if one is given, and then the output directory, each as soon as it is read, so a
/// relative output directory is relative to the input directory. None also when memory runs out.
std::optional<ConversionOptions> ParseCommandLine(Arguments arguments, const MessageSink& report);

}  // namespace zaf
