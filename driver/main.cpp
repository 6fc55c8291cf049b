#include <cstdio>
#include <exception>
#include <optional>
#include <string_view>

#include "driver/CommandLine.h"
#include "driver/ConversionRun.h"

#ifdef _WIN32
#define main wmain
#endif

/// The exit status is always 0.
int main(int argument_count, zaf::TArgumentCharacter** argument_values) {
  try {
    const zaf::TArguments arguments(argument_count, argument_values);
    const zaf::MessageSink report = [](std::string_view text) {
      static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
      static_cast<void>(std::fflush(stderr));
    };
    if (const std::optional<zaf::ConversionOptions> options =
            zaf::ParseCommandLine(arguments.Get(), report))
      zaf::RunConversion(*options, report);
  } catch (const std::exception&) {
    // Only an allocation can fail here, so memory is insufficient for a message, too.
  }
  return 0;
}
