#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/CText.h"
#include "foundation/FileSystem.h"

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace zaf::test {

/// A new directory that is removed with its content at the end of the test, when the previous
/// working directory is restored. Paths are relative to the directory.
class TTestDirectory {
 public:
  TTestDirectory() : before_(std::filesystem::current_path()) {
    std::random_device random;
    do {
      root_ = std::filesystem::canonical(std::filesystem::temp_directory_path()) /
              ("zaf2xml-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(root_));
  }
  ~TTestDirectory() {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(root_);
  }

  [[nodiscard]] std::string Path(std::string_view path = {}) const {
    std::string text = Encode(path.empty() ? root_ : Whole(path));
    std::replace(text.begin(), text.end(), '/', kPathSeparator);
    return text;
  }
  [[nodiscard]] CText Name(std::string_view path) const { return CText(Path(path)); }

  /// Writes a file; Make makes a directory. Both create the parent directories.
  void Write(std::string_view path, std::string_view content) const {
    std::filesystem::create_directories(Whole(path).parent_path());
    std::ofstream(Whole(path), std::ios::binary) << content;
  }
  /// Makes a FIFO; on Windows an empty file, which fails to open, too.
  void MakeFifo(std::string_view path) const {
#ifdef _WIN32
    Write(path, "");
#else
    mkfifo(Path(path).c_str(), 0600);
#endif
  }
  /// Makes a symbolic link. Where users may not: a copy of the file, an empty file if there is
  /// none, or nothing if it is a directory.
  void Link(std::string_view target, std::string_view path) const {
#ifdef _WIN32
    const std::filesystem::path file = Whole(path).parent_path() / target;
    if (std::filesystem::is_regular_file(file))
      std::filesystem::copy_file(file, Whole(path));
    else if (!std::filesystem::exists(file))
      Write(path, "");
#else
    std::filesystem::create_symlink(target, Whole(path));
#endif
  }
  [[nodiscard]] std::string Read(std::string_view path) const {
    std::ifstream file(Whole(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void Make(std::string_view path) const { std::filesystem::create_directories(Whole(path)); }

  /// All paths below `path`, relative to it, in ascending order; directories end with "/".
  [[nodiscard]] std::vector<std::string> List(std::string_view path = {}) const {
    std::vector<std::string> names;
    const std::filesystem::path top = Whole(path);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(top)) {
      const bool is_directory = !entry.is_symlink() && entry.is_directory();
      names.push_back(Encode(entry.path().lexically_relative(top)) + (is_directory ? "/" : ""));
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  // On Windows the standard library interprets plain characters by the locale.
  [[nodiscard]] std::filesystem::path Whole(std::string_view path) const {
    return root_ / std::u8string(path.begin(), path.end());
  }
  static std::string Encode(const std::filesystem::path& path) {
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
  }

  std::filesystem::path before_;
  std::filesystem::path root_;
};

}  // namespace zaf::test
