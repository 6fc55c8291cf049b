// Any words as a command line: the parser prints at most its messages and keeps within bounds.

#include <filesystem>
#include <string>
#include <vector>

#include "driver/CommandLine.h"

#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zaf;
  std::vector<std::string> words{"Zaf2Xml"};
  std::string word;
  for (const char c : std::string_view(reinterpret_cast<const char*>(data), size)) {
    if (c != '\0' && c != '\n') {
      word += c;
      continue;
    }
    words.push_back(word);
    word.clear();
  }
  words.push_back(word);
  std::vector<const char*> arguments;
  arguments.reserve(words.size());
  for (const std::string& text : words) arguments.push_back(text.c_str());
  // The parser enters directories; the fuzzer's own are relative.
  static const std::filesystem::path start = std::filesystem::current_path();
  std::size_t printed = 0;
  static_cast<void>(
      ParseCommandLine(arguments, [&](std::string_view text) { printed += text.size(); }));
  std::filesystem::current_path(start);
  fuzz::Require(printed < 4096, "messages are short");
  return 0;
}
