#pragma once

#include <cstddef>
#include <cstdint>

/// What the injector and the program that drives it tell each other. They share one page of memory,
/// so that nothing is lost when the process under test is killed.
namespace zaf::faults {

/// The calls that the injector can disturb; each is counted from the start of main.
enum class Call : std::uint32_t {
  kAllocation,  ///< malloc, calloc, realloc and their kin; operator new stands on them.
  kOpen,
  kRead,
  kWrite,
  kClose,
  kSeek,
  kStat,  ///< stat, lstat, fstat, fstatat
  kOpenDirectory,
  kReadDirectory,
  kEnterDirectory,
  kMakeDirectory,
  kRemoveDirectory,
  kWorkingDirectory,
  kLink,
  kRename,
  kUnlink,
  kRandom,
  kSignal,
  kStreamOpen,
  kStreamWrite,  ///< How messages leave the program.
  kAnyFileCall,  ///< Every call but the allocations.
};
inline constexpr std::size_t kCallCount = static_cast<std::size_t>(Call::kAnyFileCall) + 1;

inline constexpr const char* kCallNames[kCallCount] = {
    "allocation", "open",    "read",   "write",  "close", "lseek",  "stat",
    "opendir",    "readdir", "chdir",  "mkdir",  "rmdir", "getcwd", "linkat",
    "rename",     "unlink",  "random", "signal", "fopen", "fwrite", "any file call"};

enum class Action : std::uint32_t {
  kNone,
  kFail,       ///< The call fails with the plan's error number.
  kShorten,    ///< A read or write takes half of its bytes, at least one.
  kKill,       ///< SIGKILL in front of the call.
  kKillAfter,  ///< SIGKILL behind the call.
  kMove,       ///< The plan's directory gets another name in front of the call.
};

enum class Extent : std::uint32_t {
  kOnce,     ///< The call with the plan's number.
  kOnwards,  ///< That one and all later ones.
};

/// Peculiarities of the file system that last for the whole run.
enum class Machine : std::uint32_t {
  kUsual,
  kNoUnnamedFiles,  ///< O_TMPFILE is not supported.
  kNoLinks,         ///< linkat is not permitted.
};

inline constexpr std::size_t kPathSize = 256;

struct TPlan {
  Call call = Call::kAllocation;
  Action action = Action::kNone;
  Extent extent = Extent::kOnce;
  Machine machine = Machine::kUsual;
  std::uint64_t number = 0;  ///< Of the call, counted from 1.
  int error = 0;
  int limited_resource = -1;  ///< For setrlimit, in front of main; -1: none.
  std::uint64_t limit = 0;
  std::uint32_t user = 0;  ///< Whom the process becomes in front of main; 0: it stays who it is.
  bool is_traced = false;  ///< The place of the disturbed call is told on standard error.
  char output[kPathSize] = {};  ///< The directory to which everything that is made has to go.
  char move_from[kPathSize] = {};
  char move_to[kPathSize] = {};
};

struct TReport {
  std::uint64_t counts[kCallCount] = {};
  std::int64_t live_blocks = 0;  ///< Blocks not freed, and what was live in front of main.
  bool has_reached_main = false;
  bool has_struck = false;
  bool is_of_registration = false;  ///< It was to have a static object destroyed at the end.
  bool has_strayed = false;         ///< Something was to be made outside the output directory.
  bool is_creation = false;         ///< The disturbed call was to create or name a file.
  Call struck_call = Call::kAllocation;
};

struct TPage {
  TPlan plan;
  TReport report;
};

/// The descriptor under which the process under test finds the page, given in the environment.
inline constexpr int kPageDescriptor = 100;
inline constexpr char kPageVariable[] = "ZAF2XML_FAULT_PAGE";

}  // namespace zaf::faults
