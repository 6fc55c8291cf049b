// Parses any words as a command line: the parser must only print messages and stay within bounds.

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "driver/CommandLine.h"
#include "fuzz/FuzzSupport.h"

namespace {

bool IsWordEnd(char c) { return c == '\0' || c == '\n'; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zaf;
  std::vector<std::string> words{"Zaf2Xml"};
  const auto* const end = reinterpret_cast<const char*>(data) + size;
  for (const char* begin = end - size;;) {
    const char* const word_end = std::find_if(begin, end, IsWordEnd);
    words.emplace_back(begin, word_end);
    if (word_end == end) break;
    begin = word_end + 1;
  }
  std::vector<const char*> arguments;
  arguments.reserve(words.size());
  for (const std::string& word : words) arguments.push_back(word.c_str());
  // The parser enters directories, and the fuzzer's own are relative.
  static const std::filesystem::path start = std::filesystem::current_path();
  std::size_t printed = 0;
  static_cast<void>(
      ParseCommandLine(arguments, [&](std::string_view text) { printed += text.size(); }));
  std::filesystem::current_path(start);
  fuzz::Require(printed < 4096, "messages are short");
  return 0;
}
