#include "driver/ConversionRun.h"

#include <algorithm>
#include <new>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "driver/FileConversion.h"
#include "driver/OutputNames.h"
#include "foundation/Attempt.h"

namespace zaf {
namespace {

/// Joins the pieces into one path. Throws std::bad_alloc when memory runs out: an incomplete path
/// would name another file or directory.
CText MakePath(std::initializer_list<std::string_view> pieces) {
  std::size_t length = 0;
  for (const std::string_view piece : pieces) length += piece.size();
  CText path(TTextCapacity{static_cast<std::uint32_t>(length)});
  for (const std::string_view piece : pieces) path.Append(piece);
  if (path.GetCharacterCount() != length) throw std::bad_alloc();
  return path;
}

CText JoinPath(std::string_view directory, std::string_view name) {
  return MakePath({directory, std::string_view(&kPathSeparator, 1), name});
}

struct TFilePaths {
  CText input;
  CText output;
};

/// The message for an outcome; empty if the outcome has no message.
std::string_view MessageOf(FileOutcome outcome) {
  switch (outcome) {
    case FileOutcome::kConverted:
    case FileOutcome::kSkipped:
    case FileOutcome::kOutputNotCreated:
    case FileOutcome::kTimeNotKept:
      return {};
    case FileOutcome::kInputNotOpened:
      return messages::kCannotOpenInput;
    case FileOutcome::kInputNotRead:
    case FileOutcome::kOutputNotRead:
      return messages::kCannotRead;
    case FileOutcome::kOutputExists:
      return messages::kOutputExists;
    case FileOutcome::kOutputRefused:
    case FileOutcome::kOutputNotWritten:
      return messages::kCannotWrite;
    case FileOutcome::kOutputNotOpened:
      return messages::kCannotReopen;
  }
  return {};
}

/// Converts a file. With verification, an output that could not be created counts as one that could
/// not be opened, unless another program has created it since.
FileOutcome ConvertFileOf(TFilePaths paths, bool verify) {
  TFileRequest request;
  request.input = std::move(paths.input);
  request.output = std::move(paths.output);
  request.verification = verify ? Verification::kOn : Verification::kOff;
  const FileOutcome outcome = ConvertFile(request).outcome;
  return outcome == FileOutcome::kOutputNotCreated && verify ? ReadBack(request).outcome : outcome;
}

/// Converts the file with the paths that `make_paths` returns. False, after a message, on failure.
template <class MakePaths>
bool ConvertFileOf(MakePaths make_paths, bool verify, const MessageSink& report) {
  auto paths = Attempt([&] { return std::optional<TFilePaths>(make_paths()); }, {});
  const FileOutcome outcome =
      paths ? ConvertFileOf(std::move(*paths), verify) : FileOutcome::kInputNotOpened;
  const std::string_view message = MessageOf(outcome);
  if (!message.empty()) report(message);
  return message.empty();
}

/// Walks an input directory, depth first, without recursion and without open directories, so
/// directories can be nested as deeply as the system's path names allow. The levels form a stack;
/// each one has its own complete paths, which do not change. A directory is left out when memory is
/// insufficient; an incomplete path is never used.
class TDirectoryWalk {
 public:
  TDirectoryWalk(const ConversionOptions& options, const MessageSink& report)
      : options_(options), report_(report) {}

  /// Returns whether a file was attempted.
  bool Run() {
    const auto copy_paths = [this] {
      return TFilePaths{MakePath({options_.input_directory}),
                        MakePath({options_.output_directory})};
    };
    if (!AddLevel(copy_paths)) return false;
    ConvertLevel();
    bool has_attempts = false;
    while (!levels_.empty()) {
      if (const TLevel& level = levels_.back(); level.next == level.subdirectories.size())
        has_attempts = LeaveLevel();
      else
        VisitNextSubdirectory();
    }
    return has_attempts;
  }

 private:
  struct TLevel {
    TFilePaths paths;                 ///< Of the directories.
    bool has_created_output = false;  ///< The output directory did not exist before.
    bool has_attempts = false;        ///< A file was attempted here or below.
    std::vector<TSubdirectory> subdirectories;
    std::size_t next = 0;  ///< The subdirectory to visit next.
  };
  // A vector copies its elements if moving them could throw, and a copy may be incomplete.
  static_assert(std::is_nothrow_move_constructible_v<TLevel>);

  /// Adds a level for the directories with the paths that `make_paths` returns. False, after a
  /// message, when memory is insufficient.
  template <class MakePaths>
  bool AddLevel(MakePaths make_paths) {
    const auto add = [&] {
      TLevel level;
      level.paths = make_paths();
      levels_.push_back(std::move(level));
      return true;
    };
    if (Attempt(add, false)) return true;
    report_(messages::kNoInputSubdirectory);
    return false;
  }

  /// Converts the files of the last level and finds its subdirectories.
  void ConvertLevel() {
    TLevel& level = levels_.back();
    if (!EnterDirectory(level.paths.input)) {
      report_(messages::kNoInputSubdirectory);
      return;
    }
    TDirectoryListing listing;
    const Identities identities = options_.recurse ? Identities::kWanted : Identities::kOmitted;
    if (!Attempt([&] { return ListWorkingDirectory(identities, listing); }, false)) {
      report_(messages::kCannotListDirectory);
      return;
    }
    level.has_attempts = ConvertFiles(listing.names, level.paths);
    if (!options_.recurse) return;
    // The list is kept during the walk below. If shrinking fails, it only takes more memory.
    const auto shrink = [&] {
      listing.subdirectories.shrink_to_fit();
      return true;
    };
    static_cast<void>(Attempt(shrink, false));
    level.subdirectories = std::move(listing.subdirectories);
  }

  /// Converts the names with the extension; returns whether there was one.
  bool ConvertFiles(const TNameList& names, const TFilePaths& directories) {
    bool has_attempts = false;
    for (std::size_t i = 0; i < names.GetCount(); ++i) {
      const std::string_view name = names[i];
      if (!MatchesPattern(name, options_.search_pattern) ||
          !HasExtension(name, options_.dotted_extension))
        continue;
      const auto make_paths = [&] {
        return TFilePaths{JoinPath(directories.input, name),
                          JoinPath(directories.output, OutputName(name, options_.dotted_extension,
                                                                  options_.dotted_suffix))};
      };
      if (!ConvertFileOf(make_paths, options_.verify, report_)) report_(messages::kFileFailed);
      has_attempts = true;
    }
    return has_attempts;
  }

  /// Ensures that the mirror directory of the next subdirectory exists, and converts its level.
  void VisitNextSubdirectory() {
    TLevel& above = levels_.back();
    const TSubdirectory& entry = above.subdirectories[above.next++];
    if (options_.output_identity == entry.identity) return;
    const auto join_paths = [&] {
      return TFilePaths{JoinPath(above.paths.input, entry.name),
                        JoinPath(above.paths.output, entry.name)};
    };
    if (!AddLevel(join_paths)) return;
    TLevel& level = levels_.back();
    if (!EnterDirectory(level.paths.output)) {
      if (!MakeDirectory(level.paths.output)) {
        report_(messages::kCannotCreateDirectory);
        levels_.pop_back();
        // The level above ends here and counts as one without attempted files.
        levels_.back().has_attempts = false;
        levels_.back().next = levels_.back().subdirectories.size();
        return;
      }
      level.has_created_output = true;
    }
    ConvertLevel();
  }

  /// Removes the last level; returns whether a file was attempted in it.
  bool LeaveLevel() {
    const TLevel level = std::move(levels_.back());
    levels_.pop_back();
    if (!level.has_attempts && level.has_created_output && !DeleteDirectory(level.paths.output))
      report_(messages::kCannotCleanUp);
    if (!levels_.empty()) levels_.back().has_attempts |= level.has_attempts;
    return level.has_attempts;
  }

  const ConversionOptions& options_;
  const MessageSink& report_;
  std::vector<TLevel> levels_;
};

}  // namespace

bool ConvertDirectory(const ConversionOptions& options, const MessageSink& report) {
  return TDirectoryWalk(options, report).Run();
}

void ConvertSingleFile(const ConversionOptions& options, const MessageSink& report) {
  if (!EnterDirectory(options.input_directory)) {
    report(messages::kNoInputDirectory);
    return;
  }
  const auto make_paths = [&] {
    const std::string output_name =
        options.output_name_given
            ? std::string(options.output_name.View())
            : OutputName(options.input_name, options.dotted_extension, options.dotted_suffix);
    return TFilePaths{JoinPath(options.input_directory, options.input_name),
                      JoinPath(options.output_directory, output_name)};
  };
  if (!ConvertFileOf(make_paths, options.verify, report)) report(messages::kSingleFileFailed);
}

void RunConversion(const ConversionOptions& options, const MessageSink& report) {
  if (options.input_name_given)
    ConvertSingleFile(options, report);
  else
    ConvertDirectory(options, report);
}

}  // namespace zaf
