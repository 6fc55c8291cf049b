#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/TNameList.h"
#include "tool/RunOptions.h"

namespace zaf {

/// A file or directory that the user named, in a list or a report, too.
struct TInputRoot {
  std::string path;
  std::string base;      ///< Outputs are mirrored from here on: the path, or a directory above it.
  std::string absolute;  ///< The path made absolute, without `.` and `..`. Empty: as the path.
  std::string rival;     ///< An earlier file with the same output. Empty: none.

  [[nodiscard]] const std::string& GetAbsolute() const {
    return absolute.empty() ? path : absolute;
  }
};

/// All that the user named, in the byte order of the absolute paths, each once: as it was named
/// first. TToolError (kUsage) when a list or report cannot be read.
std::vector<TInputRoot> GatherRoots(const TRunOptions& options);

enum class InputKind : std::uint8_t { kFile, kMissing, kUnreadableDirectory };

/// One input. The paths are as the user gave them, joined.
struct TInput {
  InputKind kind = InputKind::kFile;
  std::string path;
  std::string base;
  std::string
      below;  ///< The path below the base, with `/`; the name of a file that is its own base.
  /// The path of an earlier input, named or in the same directory, with the same output. Empty:
  /// none.
  std::string rival;
};

/// Finds the inputs one by one in the byte order of their absolute paths, each once. Holds the
/// names of the directories above the current input, and no more. A directory that cannot be read
/// is an input, of that kind.
class TInputWalk {
 public:
  /// Both have to outlive the walk.
  TInputWalk(const std::vector<TInputRoot>& roots, const TRunOptions& options);
  ~TInputWalk();

  /// False after the last one.
  [[nodiscard]] bool Next(TInput& input);

 private:
  class TRootWalk;

  void AddRoots();

  const std::vector<TInputRoot>& roots_;
  const TRunOptions& options_;
  std::size_t next_root_ = 0;
  std::vector<std::unique_ptr<TRootWalk>> active_;  ///< Those that have an input left.
  std::string last_absolute_;
};

/// The name that an output gets for the name or path of its input: without its extension, if it is
/// one of an application, and with the suffix.
std::string OutputName(std::string_view input, const TRunOptions& options);

/// The directory and the name as one path.
std::string JoinPaths(std::string_view directory, std::string_view name);

}  // namespace zaf
