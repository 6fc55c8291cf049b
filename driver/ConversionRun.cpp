#include "driver/ConversionRun.h"

#include <exception>
#include <new>
#include <utility>
#include <vector>

#include "appfile/TQuerySpecificationServer.h"
#include "appfile/TZanfoFile.h"
#include "foundation/TDataFile.h"

namespace zaf {
namespace {

/// Inputs whose names end so, case ignored, are class files.
constexpr std::string_view kClassFileExtension = ".zcf";

std::string LowerCase(std::string_view text) {
  std::string result(text);
  for (char& character : result) character = ToLower(character);
  return result;
}

/// Where the dotted extension stands last in a name, ignoring case; npos when it does not.
std::size_t FindExtension(std::string_view name, std::string_view dotted_extension) {
  return LowerCase(name).rfind(LowerCase(dotted_extension));
}

/// A path that memory did not suffice for would name another file: that is no path at all.
CText JoinPath(std::string_view directory, std::string_view name) {
  const auto length = static_cast<std::uint32_t>(directory.size() + 1 + name.size());
  CText path(TTextCapacity{length});
  path.Append(directory);
  path.Append(kPathSeparator);
  path.Append(name);
  if (path.GetCharacterCount() != length) throw std::bad_alloc();
  return path;
}

/// Whether the name is that of a class file.
bool IsClassFileName(std::string_view name) {
  return name.size() >= kClassFileExtension.size() &&
         EqualsIgnoringCase(name.substr(name.size() - kClassFileExtension.size()),
                            kClassFileExtension);
}

/// An operation on a document; running out of memory in it is a failure like any other.
template <class Operation>
Status Attempt(Operation operation) {
  try {
    return operation();
  } catch (const std::exception&) {
    return Status::kFailure;
  }
}

/// Writes the document to a new file at the path. False when it could not be stored. A file that
/// cannot be created is none, and that is fine.
bool WriteOutput(TZanfoFile& document, const TQuerySpecificationServer& server, const CText& path,
                 TDataFile& file) {
  if (file.Open(path, TOpenMode::kCreateNew) != Status::kOk) return true;
  const Protection protection = document.IsRunOnly() ? Protection::kProtected : Protection::kPlain;
  const Status saved = Attempt([&] { return document.Save(file, &server, protection); });
  if (saved == Status::kOk && (file.Publish() == Status::kOk || !file.HasWriteFailed()))
    return true;
  file.Close();
  return false;
}

/// Reads the output again. False, with a message, when that cannot be done.
bool VerifyOutput(const TZanfoFile& document, const CText& path, TDataFile& file,
                  const MessageSink& report) {
  if (file.Open(path, TOpenMode::kRead) != Status::kOk) {
    report(messages::kCannotReopen);
    return false;
  }
  TZanfoFile written;
  if (Attempt([&] { return written.Load(file, nullptr); }) != Status::kOk) {
    report(messages::kCannotRead);
    return false;
  }
  file.Close();
  // The outcome does not count: verification finds files that cannot be read.
  static_cast<void>(document.IsEqual(written));
  return true;
}

/// Converts a file between two directories. Running out of memory ends that file, not the run.
bool ConvertFileBetween(std::string_view input_directory, std::string_view input_name, bool verify,
                        std::string_view output_directory, std::string_view output_name,
                        const MessageSink& report) {
  try {
    return ConvertFile(JoinPath(input_directory, input_name), verify,
                       JoinPath(output_directory, output_name), report);
  } catch (const std::exception&) {
    return false;
  }
}

/// Walks an input directory, depth first, without recursion and with nothing open: directories can
/// be nested as deeply as the system's path names reach. The levels form a stack; the paths are
/// those of the last one, and each level knows how long they are for it.
class TDirectoryWalk {
 public:
  TDirectoryWalk(const ConversionOptions& options, const MessageSink& report)
      : options_(options),
        report_(report),
        input_path_(options.input_directory),
        output_path_(options.output_directory) {}

  /// Whether a file was attempted.
  bool Run() {
    bool has_attempts = false;
    EnterLevel(Origin::kExisted);
    while (!levels_.empty()) {
      if (const TLevel& level = levels_.back(); level.next == level.subdirectories.size())
        has_attempts = LeaveLevel();
      else
        VisitNextSubdirectory();
    }
    return has_attempts;
  }

 private:
  /// Where a level's output directory comes from.
  enum class Origin { kExisted, kCreated };

  struct TLevel {
    std::uint32_t input_length;   ///< Of the path.
    std::uint32_t output_length;  ///< Of the path.
    Origin origin;
    bool has_attempts = false;  ///< A file was attempted here or beneath.
    std::vector<TDirectoryEntry> subdirectories;
    std::size_t next = 0;  ///< The subdirectory to visit next.
  };

  /// Begins the level of the current paths and converts its files.
  void EnterLevel(Origin origin) {
    TLevel& level = levels_.emplace_back();
    level.input_length = input_path_.GetCharacterCount();
    level.output_length = output_path_.GetCharacterCount();
    level.origin = origin;
    if (!EnterDirectory(input_path_)) {
      report_(messages::kNoInputSubdirectory);
      return;
    }
    std::vector<TDirectoryEntry> entries;
    if (!ListWorkingDirectory(options_.recurse ? Identities::kWanted : Identities::kOmitted,
                              entries)) {
      report_(messages::kCannotListDirectory);
      return;
    }
    level.has_attempts = ConvertFiles(entries);
    if (!options_.recurse) return;
    // The first two are taken for the directory itself and its parent.
    entries.erase(entries.begin(), entries.begin() + 2);
    std::erase_if(entries, [](const TDirectoryEntry& entry) {
      return (entry.attributes & kDirectoryAttribute) == 0;
    });
    entries.shrink_to_fit();  // It stays while the walk is beneath.
    level.subdirectories = std::move(entries);
  }

  /// Converts those of the entries that have the extension; whether there was one.
  bool ConvertFiles(const std::vector<TDirectoryEntry>& entries) {
    bool has_attempts = false;
    for (const TDirectoryEntry& entry : entries) {
      if (!MatchesPattern(entry.name, options_.search_pattern)) continue;
      const std::optional<std::string> output_name =
          OutputNameInDirectory(entry.name, options_.dotted_extension, options_.dotted_suffix);
      if (!output_name) continue;
      if (!ConvertFileBetween(input_path_, entry.name, options_.verify, output_path_, *output_name,
                              report_))
        report_(messages::kFileFailed);
      has_attempts = true;
    }
    return has_attempts;
  }

  /// Makes sure that the next subdirectory has its mirror image and begins its level.
  void VisitNextSubdirectory() {
    TLevel& level = levels_.back();
    const TDirectoryEntry& entry = level.subdirectories[level.next++];
    if (options_.output_identity == entry.identity) return;
    input_path_ = JoinPath(input_path_, entry.name);
    output_path_ = JoinPath(output_path_, entry.name);
    Origin origin = Origin::kExisted;
    if (!EnterDirectory(output_path_)) {
      if (!MakeDirectory(output_path_)) {
        report_(messages::kCannotCreateDirectory);
        // The level ends here, as one that attempted nothing.
        level.has_attempts = false;
        level.subdirectories.clear();
        level.next = 0;
        TruncatePaths(level);
        return;
      }
      origin = Origin::kCreated;
    }
    EnterLevel(origin);
  }

  /// Ends the last level; whether a file was attempted in it.
  bool LeaveLevel() {
    const bool has_attempts = levels_.back().has_attempts;
    if (!has_attempts && levels_.back().origin == Origin::kCreated &&
        !DeleteDirectory(output_path_))
      report_(messages::kCannotCleanUp);
    levels_.pop_back();
    if (!levels_.empty()) {
      levels_.back().has_attempts |= has_attempts;
      TruncatePaths(levels_.back());
    }
    return has_attempts;
  }

  void TruncatePaths(const TLevel& level) {
    input_path_.SubstringInPlace(0, level.input_length);
    output_path_.SubstringInPlace(0, level.output_length);
  }

  const ConversionOptions& options_;
  const MessageSink& report_;
  CText input_path_;
  CText output_path_;
  std::vector<TLevel> levels_;
};

}  // namespace

std::optional<std::string> OutputNameInDirectory(std::string_view name,
                                                 std::string_view dotted_extension,
                                                 std::string_view dotted_suffix) {
  const std::size_t position = FindExtension(name, dotted_extension);
  if (position == std::string::npos || name.size() - position != dotted_extension.size())
    return std::nullopt;
  return std::string(name.substr(0, position)).append(dotted_suffix);
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
  TZanfoFile document;
  if (IsClassFileName(input_path)) document.SetKind(DocumentKind::kClassFile);
  if (Attempt([&] { return document.Load(file, &server); }) != Status::kOk) {
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
  const std::string output_name =
      options.output_name_given
          ? std::string(options.output_name.View())
          : OutputNameOfSingleFile(options.input_name, options.dotted_extension,
                                   options.dotted_suffix);
  if (!ConvertFileBetween(options.input_directory, options.input_name, options.verify,
                          options.output_directory, output_name, report))
    report(messages::kSingleFileFailed);
}

void RunConversion(const ConversionOptions& options, const MessageSink& report) {
  if (options.input_name_given)
    ConvertSingleFile(options, report);
  else
    ConvertDirectory(options, report);
}

}  // namespace zaf
