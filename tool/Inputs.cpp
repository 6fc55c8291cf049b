#include "tool/Inputs.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <unordered_map>
#include <utility>

#include "foundation/CaseFolding.h"
#include "foundation/FileSystem.h"
#include "foundation/Paths.h"
#include "foundation/StandardPaths.h"
#include "tool/Report.h"

namespace zaf {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kStandardStream = "-";
/// The characters that end a directory or a drive in a path.
constexpr std::string_view kDirectoryEnds{"/\\:", kPathSeparator == '/' ? 1 : 3};

bool HasExtension(std::string_view name, std::string_view extension) {
  return name.size() > extension.size() && name[name.size() - extension.size() - 1] == '.' &&
         EqualsIgnoringCase(name.substr(name.size() - extension.size()), extension);
}

bool HasAnyExtension(std::string_view name, const std::vector<std::string>& extensions) {
  return std::ranges::any_of(
      extensions, [&](const std::string& extension) { return HasExtension(name, extension); });
}

std::string MakeAbsolute(const std::string& path) {
  std::error_code error;
  const fs::path absolute = fs::absolute(ToPath(path), error);
  std::string text = ToText((error ? ToPath(path) : absolute).lexically_normal());
  while (text.size() > 1 && text.back() == kPathSeparator) text.pop_back();
  return text;
}

/// The path below the directory `base`, with `/` as separator.
std::string PathBelow(std::string_view path, std::string_view base) {
  std::string below(path.substr(base.size()));
  if constexpr (kPathSeparator != '/') std::ranges::replace(below, kPathSeparator, '/');
  return below.substr(std::min(below.find_first_not_of('/'), below.size()));
}

std::string_view NameOf(std::string_view path) {
  return path.substr(path.find_last_of(kDirectoryEnds) + 1);
}

void ReadList(const TRunOptions& options, std::vector<TInputRoot>& roots) {
  std::ifstream file;
  if (options.files_from != kStandardStream)
    file.open(StreamPath(options.files_from), std::ios::binary);
  std::istream& list = options.files_from == kStandardStream ? std::cin : file;
  const char end = options.is_null_separated ? '\0' : '\n';
  for (std::string line; std::getline(list, line, end);) {
    if (kPathSeparator != '/' && line.ends_with('\r')) line.pop_back();
    if (!line.empty()) roots.push_back({line, line, {}, {}});
  }
  if (!list.eof())
    throw TToolError(ExitStatus::kUsage, "The list " + options.files_from + " cannot be read");
}

/// Finds, for each file that is its own base, an earlier one with the same output.
void FindRivals(const TRunOptions& options, std::vector<TInputRoot>& roots) {
  std::unordered_map<std::string, const TInputRoot*> roots_by_output;
  for (TInputRoot& root : roots) {
    const std::string_view name = NameOf(root.path);
    if (root.path != root.base || !options.filter.Takes(name)) continue;
    const auto [place, is_new] = roots_by_output.try_emplace(OutputName(name, options), &root);
    if (is_new) continue;
    if (IsDirectory(place->second->path))
      place->second = &root;
    else
      root.rival = place->second->path;
  }
}

}  // namespace

std::vector<TInputRoot> GatherRoots(const TRunOptions& options) {
  std::vector<TInputRoot> roots;
  for (const std::string& path : options.inputs) roots.push_back({path, path, {}, {}});
  if (!options.files_from.empty()) ReadList(options, roots);
  if (!options.retry.empty())
    for (TFailedInput& failed : ReadFailedInputs(options.retry))
      roots.push_back({std::move(failed.path), std::move(failed.base), {}, {}});
  for (TInputRoot& root : roots)
    if (std::string absolute = MakeAbsolute(root.path); absolute != root.path)
      root.absolute = std::move(absolute);
  std::ranges::stable_sort(roots, {}, &TInputRoot::GetAbsolute);
  const auto is_same = [](const TInputRoot& a, const TInputRoot& b) {
    return a.GetAbsolute() == b.GetAbsolute();
  };
  roots.erase(std::unique(roots.begin(), roots.end(), is_same), roots.end());
  if (!options.output.empty()) FindRivals(options, roots);
  return roots;
}

/// The inputs of one root.
class TInputWalk::TRootWalk {
 public:
  TRootWalk(const TInputRoot& root, const TRunOptions& options) : root_(root), options_(options) {
    input_.base = root.base;
    path_ = root.path;
    if (IsDirectory(root.path))
      EnterDirectory();
    else
      SetNext(IsThere(root.path) ? InputKind::kFile : InputKind::kMissing, root.rival);
  }

  /// Advances to the next input; false after the last one.
  bool Next() {
    while (FindNext()) {
      input_.path = path_;
      input_.below =
          root_.base == path_ ? std::string(NameOf(path_)) : PathBelow(path_, root_.base);
      absolute_.assign(root_.GetAbsolute());
      if (path_.size() > root_.path.size())
        absolute_ = JoinPaths(absolute_, std::string_view(path_).substr(path_of_root_size_));
      if (Takes()) return true;
    }
    return false;
  }

  [[nodiscard]] const TInput& GetInput() const { return input_; }
  [[nodiscard]] const std::string& GetAbsolute() const { return absolute_; }

 private:
  struct TLevel {
    TNameList names;  ///< Directories end with a separator, which gives the order of whole paths.
    std::size_t next = 0;
    std::size_t path_size = 0;  ///< Size of the directory's path, including a separator.
  };

  [[nodiscard]] bool Takes() const {
    return options_.filter.Takes(input_.below) && options_.shard.Takes(input_.below);
  }

  /// Sets `path_`, and the kind and rival of the input.
  bool FindNext() {
    while (!std::exchange(has_next_, false)) {
      if (levels_.empty()) return false;
      TLevel& level = levels_.back();
      path_.resize(level.path_size);
      if (level.next == level.names.GetCount()) {
        levels_.pop_back();
        continue;
      }
      const std::string_view name = level.names[level.next++];
      path_ += name;
      if (name.back() == kPathSeparator) {
        path_.pop_back();
        EnterDirectory();
      } else {
        SetNext(InputKind::kFile, FindRival(level, name));
      }
    }
    return true;
  }

  /// Makes `path_` the next input.
  void SetNext(InputKind kind, std::string rival) {
    input_.kind = kind;
    input_.rival = std::move(rival);
    has_next_ = true;
  }

  /// Lists the directory at `path_` in a new level, unless it is the output.
  void EnterDirectory() {
    if (!options_.output.empty() && AreSame(path_, options_.output)) return;
    TLevel level;
    const auto add = [&](std::string_view name, PathKind kind) {
      if (kind != PathKind::kDirectory && HasAnyExtension(name, options_.extensions))
        level.names.Append(name);
      else if (kind == PathKind::kDirectory && options_.recurse)
        level.names.Append(std::string(name) + kPathSeparator);
    };
    if (!VisitEntries(path_, add)) {
      SetNext(InputKind::kUnreadableDirectory, {});
      return;
    }
    level.names.SortFrom(0);
    std::string path = JoinPaths(path_, "");
    if (levels_.empty()) path_of_root_size_ = path.size();
    level.path_size = path.size();
    path_ = std::move(path);
    levels_.push_back(std::move(level));
  }

  /// An earlier file in the directory whose name differs only in the extension.
  [[nodiscard]] std::string FindRival(const TLevel& level, std::string_view name) const {
    const std::string_view stem = name.substr(0, name.rfind('.') + 1);
    for (std::size_t i = level.next - 1; i-- > 0 && level.names[i].starts_with(stem);) {
      const std::string_view other = level.names[i];
      if (other.back() == kPathSeparator ||
          OutputName(other, options_) != OutputName(name, options_))
        continue;
      std::string path = path_.substr(0, level.path_size).append(other);
      if (options_.filter.Takes(PathBelow(path, root_.base))) return path;
    }
    return {};
  }

  const TInputRoot& root_;
  const TRunOptions& options_;
  bool has_next_ = false;  ///< `path_` is the next input.
  std::vector<TLevel> levels_;
  std::string path_;
  std::size_t path_of_root_size_ = 0;  ///< Including a separator.
  TInput input_;
  std::string absolute_;
};

TInputWalk::TInputWalk(const std::vector<TInputRoot>& roots, const TRunOptions& options)
    : roots_(roots), options_(options) {}

TInputWalk::~TInputWalk() = default;

bool TInputWalk::Next(TInput& input) {
  for (;;) {
    AddRoots();
    if (active_.empty()) return false;
    // Equal paths come from directories that overlap; the first root in order counts.
    const auto first = std::ranges::min_element(
        active_, {}, [](const auto& walk) -> const std::string& { return walk->GetAbsolute(); });
    const bool is_new = (*first)->GetAbsolute() != last_absolute_;
    if (is_new) {
      input = (*first)->GetInput();
      last_absolute_ = (*first)->GetAbsolute();
    }
    if (!(*first)->Next()) active_.erase(first);
    if (is_new) return true;
  }
}

/// No input of a root comes before the root's own path, so a root is added when the paths reach it.
void TInputWalk::AddRoots() {
  while (next_root_ < roots_.size() && std::ranges::none_of(active_, [&](const auto& walk) {
           return walk->GetAbsolute() < roots_[next_root_].GetAbsolute();
         })) {
    auto walk = std::make_unique<TRootWalk>(roots_[next_root_++], options_);
    if (walk->Next()) active_.push_back(std::move(walk));
  }
}

std::string OutputName(std::string_view input, const TRunOptions& options) {
  static const std::vector<std::string> known{"zaf", "zcf", "xzf"};
  for (const std::vector<std::string>* const extensions : {&options.extensions, &known})
    for (const std::string& extension : *extensions)
      if (HasExtension(input, extension))
        return std::string(input.substr(0, input.size() - extension.size())) + options.suffix;
  return std::string(input) + "." + options.suffix;
}

std::string JoinPaths(std::string_view directory, std::string_view name) {
  std::string path(directory);
  if (path.find_last_of(kDirectoryEnds) + 1 != path.size()) path += kPathSeparator;
  return path += name;
}

}  // namespace zaf
