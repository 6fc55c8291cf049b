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
  kInvalid = 0,  ///< Its quotes do not match, which a message reported.
  kJoined = 1,   ///< The value was joined from several arguments.
  kSingle = 2,   ///< The value is the one argument.
};

/// Takes the value at `arguments[index]`. A value with blanks is in single quotes and comes as
/// several arguments: they are joined with one blank each, without the quotes, and `index` is
/// moved to the last of them. `value` is set unless the result is kInvalid.
ParameterForm NormaliseParameter(Arguments arguments, std::size_t& index, const MessageSink& report,
                                 CText& value);

/// Turns the arguments into options; none, after a message, when the program is to stop. Enters the
/// input directory, if one is named, and then the output directory, each as soon as it is read: a
/// relative output directory counts from the input directory. When memory runs out there are no
/// options.
std::optional<ConversionOptions> ParseCommandLine(Arguments arguments, const MessageSink& report);

}  // namespace zaf
