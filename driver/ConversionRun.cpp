#include "driver/ConversionRun.h"

#include <algorithm>
#include <new>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "appfile/TQuerySpecificationServer.h"
#include "appfile/TZanfoFile.h"
#include "foundation/Attempt.h"
#include "foundation/LargePages.h"
#include "foundation/TDataFile.h"

namespace zaf {
namespace {

/// Inputs whose names end so, case ignored, are class files.
constexpr std::string_view kClassFileExtension = ".zcf";

/// Where the dotted extension stands last in a name, ignoring case; npos when it does not.
std::size_t FindExtension(std::string_view name, std::string_view dotted_extension) {
  const auto place =
      std::find_end(name.begin(), name.end(), dotted_extension.begin(), dotted_extension.end(),
                    [](char a, char b) { return ToLower(a) == ToLower(b); });
  return place == name.end() ? std::string_view::npos
                             : static_cast<std::size_t>(place - name.begin());
}

/// Whether a name ends with the dotted extension, ignoring case.
bool HasExtension(std::string_view name, std::string_view dotted_extension) {
  const std::size_t position = FindExtension(name, dotted_extension);
  return position != std::string_view::npos && name.size() - position == dotted_extension.size();
}

/// The pieces as one path. One that memory did not suffice for would name another file or
/// directory: std::bad_alloc.
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

/// Whether the name is that of a class file.
bool IsClassFileName(std::string_view name) {
  return name.size() >= kClassFileExtension.size() &&
         EqualsIgnoringCase(name.substr(name.size() - kClassFileExtension.size()),
                            kClassFileExtension);
}

/// Writes the document to a new file at the path. False when it could not be stored. A file that
/// cannot be created is none, and that is fine.
bool WriteOutput(TZanfoFile& document, const TQuerySpecificationServer& server, const CText& path,
                 TDataFile& file) {
  const Protection protection = document.IsRunOnly() ? Protection::kProtected : Protection::kPlain;
  bool is_created = false;
  const auto save = [&] {
    is_created = file.OpenNew(path) == Status::kOk;
    return !is_created || document.Save(file, &server, protection) == Status::kOk;
  };
  const auto publish = [&] { return file.Publish() == Status::kOk || !file.HasWriteFailed(); };
  const bool is_stored = Attempt(save, false) && (!is_created || Attempt(publish, false));
  file.Close();
  return is_stored;
}

/// Reads the output again. False, with a message, when that cannot be done.
bool VerifyOutput(const TZanfoFile& document, const CText& path, TDataFile& file,
                  const MessageSink& report) {
  if (file.Open(path, TOpenMode::kRead) != Status::kOk) {
    report(messages::kCannotReopen);
    return false;
  }
  TZanfoFile written;
  if (written.Load(file, nullptr) != Status::kOk) {
    report(messages::kCannotRead);
    return false;
  }
  file.Close();
  // The outcome does not count: verification finds files that cannot be read.
  static_cast<void>(Attempt([&] { return document.IsEqual(written); }, false));
  return true;
}

struct TFilePaths {
  CText input;
  CText output;
};

/// Converts the file whose paths `make_paths` gives.
template <class MakePaths>
bool ConvertFileOf(MakePaths make_paths, bool verify, const MessageSink& report) {
  const auto paths = Attempt([&] { return std::optional<TFilePaths>(make_paths()); }, {});
  if (!paths) {
    report(messages::kCannotOpenInput);
    return false;
  }
  return ConvertFile(paths->input, verify, paths->output, report);
}

/// Walks an input directory, depth first, without recursion and with nothing open: directories can
/// be nested as deeply as the system's path names reach. The levels form a stack. Each one has its
/// own paths, which are whole and stay as they are: a directory that memory does not suffice for
/// is left out, and nothing can be taken for another one.
class TDirectoryWalk {
 public:
  TDirectoryWalk(const ConversionOptions& options, const MessageSink& report)
      : options_(options), report_(report) {}

  /// Whether a file was attempted.
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
    bool has_created_output = false;  ///< The output directory was not there before.
    bool has_attempts = false;        ///< A file was attempted here or beneath.
    std::vector<TSubdirectory> subdirectories;
    std::size_t next = 0;  ///< The subdirectory to visit next.
  };
  // A vector copies its elements when moving them could fail, and a copy need not be whole.
  static_assert(std::is_nothrow_move_constructible_v<TLevel>);

  /// Adds a level for the directories whose paths `make_paths` gives. False, with a message, when
  /// memory does not suffice.
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
    // The list stays while the walk is beneath. It is no worse when there is no memory for less.
    const auto shrink = [&] {
      listing.subdirectories.shrink_to_fit();
      return true;
    };
    static_cast<void>(Attempt(shrink, false));
    level.subdirectories = std::move(listing.subdirectories);
  }

  /// Converts those of the names that have the extension; whether there was one.
  bool ConvertFiles(const TNameList& names, const TFilePaths& directories) {
    bool has_attempts = false;
    for (std::size_t i = 0; i < names.GetCount(); ++i) {
      const std::string_view name = names[i];
      if (!MatchesPattern(name, options_.search_pattern) ||
          !HasExtension(name, options_.dotted_extension))
        continue;
      const auto make_paths = [&] {
        return TFilePaths{
            JoinPath(directories.input, name),
            JoinPath(directories.output, *OutputNameInDirectory(name, options_.dotted_extension,
                                                                options_.dotted_suffix))};
      };
      if (!ConvertFileOf(make_paths, options_.verify, report_)) report_(messages::kFileFailed);
      has_attempts = true;
    }
    return has_attempts;
  }

  /// Makes sure that the next subdirectory has its mirror image and converts its level.
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
        EndLevel();
        return;
      }
      level.has_created_output = true;
    }
    ConvertLevel();
  }

  /// Ends the last level here, as one that attempted nothing.
  void EndLevel() {
    TLevel& level = levels_.back();
    level.has_attempts = false;
    level.subdirectories.clear();
    level.next = 0;
  }

  /// Leaves the last level; whether a file was attempted in it.
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

std::optional<std::string> OutputNameInDirectory(std::string_view name,
                                                 std::string_view dotted_extension,
                                                 std::string_view dotted_suffix) {
  if (!HasExtension(name, dotted_extension)) return std::nullopt;
  name.remove_suffix(dotted_extension.size());
  return std::string(name).append(dotted_suffix);
}

std::string OutputNameOfSingleFile(std::string_view name, std::string_view dotted_extension,
                                   std::string_view dotted_suffix) {
  std::string result(name);
  if (const std::size_t position = FindExtension(name, dotted_extension);
      position != std::string::npos)
    result.erase(position, dotted_extension.size());
  return result.append(dotted_suffix);
}

bool ConvertFile(const CText& input_path, bool verify, const CText& output_path,
                 const MessageSink& report) {
  TDataFile file;
  const TQuerySpecificationServer server;
  if (file.Open(input_path, TOpenMode::kRead) != Status::kOk) {
    report(messages::kCannotOpenInput);
    return false;
  }
  const TLargePageHeap heap(file.GetSize());
  TZanfoFile document;
  if (IsClassFileName(input_path)) document.SetKind(DocumentKind::kClassFile);
  if (document.Load(file, &server) != Status::kOk) {
    report(messages::kCannotRead);
    return false;
  }
  file.Close();
  const TPresence presence = ProbeFile(output_path);
  if (presence == TPresence::kFile) {
    report(messages::kOutputExists);
    return false;
  }
  if (presence == TPresence::kAbsent && !WriteOutput(document, server, output_path, file)) {
    report(messages::kCannotWrite);
    return false;
  }
  return !verify || VerifyOutput(document, output_path, file, report);
}

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
            : OutputNameOfSingleFile(options.input_name, options.dotted_extension,
                                     options.dotted_suffix);
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
