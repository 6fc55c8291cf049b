// Writes applications of the sample writer to files, the inputs of the measuring scripts.

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <optional>
#include <string>

#include "bench/SampleApplication.h"

namespace {

using namespace zaf::bench;

constexpr char kUsage[] =
    "usage: make_applications KIND FILES DIRECTORY [SIZE]\n"
    "KIND: typical, mixed, dense, flat, nested, chain or long\n"
    "SIZE: the number of actions, of a long one its bytes\n";

std::optional<std::size_t> ParseNumber(std::string_view text) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace

int main(int argument_count, char** arguments) {
  if (argument_count != 4 && argument_count != 5) return std::fputs(kUsage, stderr), 2;
  const std::optional<SampleKind> kind = ParseSampleKind(arguments[1]);
  const std::optional<std::size_t> files = ParseNumber(arguments[2]);
  if (!kind || !files) return std::fputs(kUsage, stderr), 2;
  const std::optional<std::size_t> size =
      argument_count == 5 ? ParseNumber(arguments[4]) : UsualSize(*kind);
  if (!size) return std::fputs(kUsage, stderr), 2;
  for (std::size_t i = 0; i < *files; ++i) {
    const std::string number = std::to_string(i);
    const std::string path = std::string(arguments[3]) + "/application-" +
                             std::string(6 - std::min<std::size_t>(6, number.size()), '0') +
                             number + ".zaf";
    std::ofstream file(path, std::ios::binary);
    file << MakeApplication(*kind, static_cast<std::uint32_t>(i), *size);
    if (!file.flush()) {
      std::perror(path.c_str());
      return 1;
    }
  }
  return 0;
}
