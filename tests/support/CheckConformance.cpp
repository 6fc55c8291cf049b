// Reads test cases that are sorted into directories by whether they are well-formed, and prints
// which ones the parser decides wrongly: check_conformance DIRECTORY

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "dom/dom.h"

int main(int argument_count, char** arguments) {
  if (argument_count != 2) return std::fputs("usage: check_conformance DIRECTORY\n", stderr), 2;
  int right = 0;
  int wrong = 0;
  int left_out = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(arguments[1])) {
    const std::string path = entry.path().generic_string();
    if (entry.path().extension() != ".xml") continue;
    const bool is_refused = path.find("/not-wf/") != path.npos;
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    dom::ParseReport report;
    const bool is_accepted =
        static_cast<bool>(dom::DOMImplementation::createDocument(std::span(text), &report));
    // The error in these is in another file or in the internal subset.
    const bool is_external = is_refused && path.find("/not-wf/sa/") == path.npos;
    if (is_external || report.fault == dom::ParseFault::kInternalSubset) {
      ++left_out;
    } else if (is_accepted == is_refused) {
      ++wrong;
      std::printf("wrong: %s: %s\n", path.c_str(),
                  is_accepted ? "accepted" : std::string(report.GetReason()).c_str());
    } else {
      ++right;
    }
  }
  std::printf("%d right, %d wrong, %d with an internal subset or external faults left out\n", right,
              wrong, left_out);
  return wrong == 0 && right > 0 ? 0 : 1;
}
