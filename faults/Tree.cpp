#include "faults/Tree.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace zaf::faults {

namespace fs = std::filesystem;

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(file), {}};
}

void AddFile(TTree& tree, const std::string& path, std::string_view bytes) {
  for (std::size_t slash = path.find('/'); slash != std::string::npos;
       slash = path.find('/', slash + 1))
    tree.emplace(path.substr(0, slash), DirectoryEntry());
  tree[path] = FileEntry(bytes);
}

TTree ReadTree(const fs::path& directory) {
  TTree tree;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(directory)) {
    std::string value = DirectoryEntry();
    if (entry.is_symlink())
      value = kLinkLetter + fs::read_symlink(entry.path()).string();
    else if (entry.is_regular_file())
      value = FileEntry(ReadFile(entry.path()));
    tree.emplace(entry.path().lexically_relative(directory).string(), std::move(value));
  }
  return tree;
}

void WriteTree(const TTree& tree, const fs::path& directory) {
  fs::create_directories(directory);
  for (const fs::directory_entry& entry : fs::directory_iterator(directory))
    fs::remove_all(entry.path());
  for (const auto& [path, entry] : tree) {
    const fs::path place = directory / path;
    const std::string_view bytes = std::string_view(entry).substr(1);
    if (entry.front() == kDirectoryLetter) {
      fs::create_directory(place);
    } else if (entry.front() == kLinkLetter) {
      fs::create_symlink(bytes, place);
    } else {
      std::ofstream file(place, std::ios::binary);
      file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
      if (!file.flush()) throw std::runtime_error("cannot write " + place.string());
    }
  }
}

}  // namespace zaf::faults
