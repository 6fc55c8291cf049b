#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/TNameList.h"
#include "tool/RunOptions.h"

namespace zaf {

/// A file or directory that the user named, including in a list or a report.
struct TInputRoot {
  std::string path;
  std::string base;      ///< The path or a directory above it, below which outputs are mirrored.
  std::string absolute;  ///< The path, absolute, without `.` and `..`. Empty: equal to the path.
  std::string rival;     ///< An earlier file with the same output. Empty: none.

  [[nodiscard]] const std::string& GetAbsolute() const {
    return absolute.empty() ? path : absolute;
  }
};

/// Returns all files and directories that the user named, in the byte order of their absolute
/// paths, each once under its first name. Throws TToolError (kUsage) when a list or report cannot
/// be read.
std::vector<TInputRoot> GatherRoots(const TRunOptions& options);

enum class InputKind : std::uint8_t { kFile, kMissing, kUnreadableDirectory };

/// One input. The paths are as the user gave them, joined.
struct TInput {
  InputKind kind = InputKind::kFile;
  std::string path;
  std::string base;
  std::string
      below;  ///< The path below the base, with `/`; the name of a file that is its own base.
  /// The path of an earlier input, named or in the same directory, with the same output. Empty if
  /// no input has it.
  std::string rival;
};

/// Finds the inputs one by one in the byte order of their absolute paths, each once. Keeps only the
/// names in the directories above the current input. A directory that cannot be read is an input of
/// that kind.
class TInputWalk {
 public:
  /// Both must outlive the walk.
  TInputWalk(const std::vector<TInputRoot>& roots, const TRunOptions& options);
  ~TInputWalk();

  /// Gets the next input; false after the last one.
  [[nodiscard]] bool Next(TInput& input);

 private:
  class TRootWalk;

  void AddRoots();

  const std::vector<TInputRoot>& roots_;
  const TRunOptions& options_;
  std::size_t next_root_ = 0;
  std::vector<std::unique_ptr<TRootWalk>> active_;  ///< Those with inputs left.
  std::string last_absolute_;
};

/// The name of the output for the name or path of an input: without its extension, if that is one
/// of an application, and with the suffix.
std::string OutputName(std::string_view input, const TRunOptions& options);

/// Joins the directory and the name to one path.
std::string JoinPaths(std::string_view directory, std::string_view name);

}  // namespace zaf
