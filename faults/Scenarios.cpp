#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <set>
#include <stdexcept>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include "tests/support/LegacyFile.h"

#include "faults/Campaigns.h"

namespace zaf::faults {
namespace {

namespace fs = std::filesystem;

/// Everybody's least powerful user.
constexpr std::uint32_t kNobody = 65534;
constexpr int kDeepLevels = 200'000;
constexpr std::uint64_t kSmallStack = 256 << 10;

/// Plans that set a limit, one for each value.
std::vector<TPlan> PlansForLimits(int resource, const std::set<std::uint64_t>& limits, Call call) {
  std::vector<TPlan> plans;
  for (const std::uint64_t limit : limits) {
    TPlan plan;
    plan.call = call;
    plan.limited_resource = resource;
    plan.limit = limit;
    plans.push_back(plan);
  }
  return plans;
}

/// A file system of its own over a directory, as long as it lives.
class TMount {
 public:
  TMount(fs::path place, const std::string& options) : place_(std::move(place)) {
    is_mounted_ = mount("none", place_.c_str(), "tmpfs", 0, options.c_str()) == 0;
  }
  TMount(const TMount&) = delete;
  TMount& operator=(const TMount&) = delete;
  ~TMount() {
    if (is_mounted_) umount2(place_.c_str(), MNT_DETACH);
  }
  [[nodiscard]] bool IsMounted() const { return is_mounted_; }

 private:
  fs::path place_;
  bool is_mounted_;
};

/// Whether there are other users whom we could become. Where root is only ourselves by another
/// name, there are none.
bool HasOtherUsers() {
  return ReadFile("/proc/self/uid_map").find("4294967295") != std::string::npos;
}

/// Converts into file systems of which `option` gives the size.
void FillDisk(TTrial& trial, const std::string& kind, const std::string& option, int least,
              int most, int step, Call call) {
  const TSandbox& sandbox = trial.FirstSandbox();
  for (int size = least; size <= most; size += step) {
    sandbox.Restore(trial.Current());
    const TMount disk(sandbox.Output(), option + std::to_string(size));
    if (!disk.IsMounted()) {
      std::printf("  SKIPPED: %s (mounting a file system is not permitted)\n", kind.c_str());
      return;
    }
    WriteTree(trial.Current().output_before, sandbox.Output());
    TStart start;
    start.plan.call = call;
    trial.TryOnce(kind, start);
  }
}

std::string DeepApplication() {
  test::LegacyFile file;
  std::string parent;
  for (int level = 0; level < kDeepLevels; ++level) {
    const std::string name = "a" + std::to_string(level);
    file.Action("null", name, parent);
    parent = name;
  }
  return file.Bytes();
}

/// Tries the case with a usual and then with a small stack.
void ConvertOnSmallStack(TTrial& trial, const TCase& what) {
  trial.Begin(what);
  trial.TryPlans("small stack", PlansForLimits(RLIMIT_STACK, {kSmallStack}, Call::kAllocation));
}

}  // namespace

void LimitResources(TTrial& trial, Extensiveness extensiveness) {
  std::set<std::uint64_t> sizes{0, 1};
  for (const auto& [path, entry] : trial.Expected().output)
    for (const std::size_t size : {entry.size() - 2, entry.size() - 1, entry.size()})
      if (IsFileEntry(entry)) sizes.insert(size);
  trial.TryPlans("file size limited", PlansForLimits(RLIMIT_FSIZE, sizes, Call::kAllocation));

  std::set<std::uint64_t> counts;
  for (std::uint64_t count = 0; count <= 8; ++count) counts.insert(count);
  trial.TryPlans("open files limited", PlansForLimits(RLIMIT_NOFILE, counts, Call::kOpen));

  // From less than what the libraries take to more than the conversion needs.
  std::set<std::uint64_t> spaces;
  const std::uint64_t step = extensiveness == Extensiveness::kLong ? 8 << 10 : 64 << 10;
  for (std::uint64_t space = 6 << 20; space <= 12 << 20; space += step) spaces.insert(space);
  trial.TryPlans("address space limited", PlansForLimits(RLIMIT_AS, spaces, Call::kAllocation));
}

void FillDisks(TTrial& trial) {
  FillDisk(trial, "full disk", "size=", 4096, 64 * 4096, 4096, Call::kAllocation);
  FillDisk(trial, "disk without room for more files", "nr_inodes=", 2, 16, 1, Call::kOpen);
}

void DenyAccess(TTrial& trial) {
  const TSandbox& sandbox = trial.FirstSandbox();
  const bool is_root = geteuid() == 0;
  if (is_root && !HasOtherUsers()) {
    std::printf("  SKIPPED: access denied (this root has no other user to become)\n");
    return;
  }
  struct TDenial {
    fs::path place;
    fs::perms permissions;
  };
  const TDenial denials[] = {
      {sandbox.Output(),                  fs::perms(0555)},
      {sandbox.Output(),                  fs::perms(0666)},
      {sandbox.Output(),                  fs::perms(0000)},
      {sandbox.Input(),                   fs::perms(0000)},
      {sandbox.Input(),                   fs::perms(0111)},
      {sandbox.Input() / "guestbook.zaf", fs::perms(0000)},
      {sandbox.Input() / "deep",          fs::perms(0000)},
      {sandbox.Input() / "deep",          fs::perms(0444)},
  };
  for (const TDenial& denial : denials) {
    sandbox.Restore(trial.Current());
    // Without root's powers, which no permissions stop.
    fs::permissions(sandbox.Output(), fs::perms(0777));
    const fs::perms usual = fs::status(denial.place).permissions();
    fs::permissions(denial.place, denial.permissions);
    TStart start;
    start.plan.call = Call::kOpen;
    start.plan.user = is_root ? kNobody : 0;
    const TRun run = trial.Run(sandbox, start);
    fs::permissions(denial.place, usual);
    trial.Count("access denied", start,
                JudgeRun(trial.Expected(), start.plan, run, sandbox.Look()));
  }
}

void CloseTerminal(TTrial& trial) {
  const TSandbox& sandbox = trial.FirstSandbox();
  for (const Terminal terminal : {Terminal::kClosed, Terminal::kFull, Terminal::kBroken}) {
    sandbox.Restore(trial.Current());
    TStart start;
    start.terminal = terminal;
    TExpectation expected = trial.Expected();
    expected.events.clear();
    const TRun run = trial.Run(sandbox, start);
    trial.Count("terminal takes nothing", start,
                JudgeRun(expected, start.plan, run, sandbox.Look()));
  }
}

void ConvertDeepTrees(TTrial& trial, const std::vector<TCase>& cases) {
  for (const TCase& what : cases) ConvertOnSmallStack(trial, what);
  TCase deep{"deep legacy", {"-v"}, {}, {}};
  AddFile(deep.input, "deep.zaf", DeepApplication());
  ConvertOnSmallStack(trial, deep);
  const std::string document = trial.Expected().output.at("deep.xzf").substr(1);
  TCase deep_document{"deep document", {"-v"}, {}, {}};
  AddFile(deep_document.input, "deep.zaf", document);
  ConvertOnSmallStack(trial, deep_document);
}

void MisleadByNames(TTrial& trial, const TCase& what) {
  TCase odd{"names", {"-r"}, what.input, what.output_before};
  const std::string broken = what.input.at("broken.zaf").substr(1);
  const std::string sound = what.input.at("guestbook.zaf").substr(1);
  for (const char* const stem :
       {"\x1b[31mred\x07", "two\nlines\r", "\xff\xfe\x80", "%s%n", "-v", ""}) {
    AddFile(odd.input, std::string(stem) + ".zaf", sound);
    AddFile(odd.input, std::string(stem) + "!.zaf", broken);
  }
  AddFile(odd.input, "aside.zaf", sound);
  AddFile(odd.input, "dangling.zaf", sound);
  odd.output_before["aside.xzf"] = "l../elsewhere/file";
  odd.output_before["dangling.xzf"] = "l../elsewhere/nothing";

  const TSandbox& sandbox = trial.FirstSandbox();
  TTree elsewhere;
  AddFile(elsewhere, "file", "This file is none of its business.\n");
  WriteTree(elsewhere, sandbox.Root() / "elsewhere");
  trial.Begin(odd);
  sandbox.Restore(odd);
  trial.TryOnce("odd names and links", {});
  if (ReadTree(sandbox.Root() / "elsewhere") != elsewhere)
    trial.Count("odd names and links", {}, {Outcome::kViolation, "it wrote through a link"});
  fs::remove_all(sandbox.Root() / "elsewhere");
}

}  // namespace zaf::faults
