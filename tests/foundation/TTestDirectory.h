#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdlib.h>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/CText.h"

namespace zaf::test {

/// A new directory that is gone, with all in it, when the test is done; the working directory is
/// then what it was. Paths count from the directory.
class TTestDirectory {
 public:
  TTestDirectory() : before_(std::filesystem::current_path()) {
    std::string name = (std::filesystem::temp_directory_path() / "zaf2xml-XXXXXX").string();
    if (mkdtemp(name.data()) != nullptr) root_ = std::filesystem::canonical(name);
  }
  ~TTestDirectory() {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(root_);
  }

  [[nodiscard]] std::string Path(std::string_view path = {}) const {
    return path.empty() ? root_.string() : (root_ / path).string();
  }
  [[nodiscard]] CText Name(std::string_view path) const { return CText(Path(path)); }

  /// Writes a file; Make makes a directory. Both make the directories above.
  void Write(std::string_view path, std::string_view content) const {
    std::filesystem::create_directories(std::filesystem::path(Path(path)).parent_path());
    std::ofstream(Path(path), std::ios::binary) << content;
  }
  [[nodiscard]] std::string Read(std::string_view path) const {
    std::ifstream file(Path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void Make(std::string_view path) const { std::filesystem::create_directories(Path(path)); }

  /// Everything beneath `path`, counted from there, in ascending order; directories end with "/".
  [[nodiscard]] std::vector<std::string> List(std::string_view path = {}) const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Path(path))) {
      const bool is_directory = !entry.is_symlink() && entry.is_directory();
      names.push_back(entry.path().lexically_relative(Path(path)).string() +
                      (is_directory ? "/" : ""));
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::filesystem::path before_;
  std::filesystem::path root_;
};

}  // namespace zaf::test
