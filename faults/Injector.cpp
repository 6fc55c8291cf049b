// A library that is loaded in front of the C library (LD_PRELOAD) and makes one call of the program
// fail, fall short or be its last, as the page says that it shares with whoever started it. It also
// watches the heap: new blocks and freed ones are overwritten, so that whoever reads them is found
// out by what is written, and a block that is freed twice or was written beyond its end aborts.

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "faults/Plan.h"

// The C library's own heap, below the names that are taken here.
extern "C" void* __libc_malloc(std::size_t size);  // NOLINT(bugprone-reserved-identifier)
extern "C" void __libc_free(void* block);          // NOLINT(bugprone-reserved-identifier)
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" int __cxa_atexit(void (*destroy)(void*), void* object, void* library);

namespace {

using namespace zaf::faults;

/// Counts go here until the shared page is there, and when there is none.
TPage page_of_nobody;
TPage* page = &page_of_nobody;
bool is_armed = false;
/// The destruction of an object of static storage is being registered.
bool is_registering = false;

[[noreturn]] void Kill() {
  kill(getpid(), SIGKILL);
  for (;;) pause();
}

/// The next definition of a function: that of the C library.
template <class Function>
Function* Next(Function*, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
#define NEXT(function)                                      \
  ([] {                                                     \
    static auto* const next = Next(&(function), #function); \
    return next;                                            \
  }())

bool IsTurnOf(Call call) {
  const TPlan& plan = page->plan;
  const std::uint64_t count = page->report.counts[static_cast<std::size_t>(call)];
  return plan.call == call &&
         (plan.extent == Extent::kOnce ? count == plan.number : count >= plan.number);
}

/// Tells who made the call.
void TellPlace() {
  is_armed = false;
  void* places[64];
  backtrace_symbols_fd(places, backtrace(places, 64), STDERR_FILENO);
  is_armed = true;
}

/// Counts one call and says what is to become of it.
Action Strike(Call call, bool is_creation) {
  if (!is_armed) return Action::kNone;
  ++page->report.counts[static_cast<std::size_t>(call)];
  bool is_struck = IsTurnOf(call);
  if (call != Call::kAllocation) {
    ++page->report.counts[static_cast<std::size_t>(Call::kAnyFileCall)];
    is_struck = is_struck || IsTurnOf(Call::kAnyFileCall);
  }
  if (!is_struck || page->plan.action == Action::kNone) return Action::kNone;
  if (page->plan.is_traced) TellPlace();
  page->report.has_struck = true;
  page->report.is_creation = is_creation;
  page->report.is_of_registration |= call == Call::kAllocation && is_registering;
  page->report.struck_call = call;
  return page->plan.action;
}

/// Does a call, or what is to become of it.
template <class Result, class Real>
Result Perform(Action action, Result failure, Real real) {
  switch (action) {
    case Action::kFail:
      errno = page->plan.error;
      return failure;
    case Action::kKill:
      Kill();
    case Action::kKillAfter:
      static_cast<void>(real());
      Kill();
    case Action::kMove:
      NEXT(rename)(page->plan.move_from, page->plan.move_to);
      break;
    default:
      break;
  }
  return real();
}

template <class Result, class Real>
Result Disturb(Call call, Result failure, Real real) {
  return Perform(Strike(call, false), failure, real);
}

/// The same for a call that may create or name a file.
template <class Real>
int DisturbCreation(Call call, bool is_creation, Real real) {
  return Perform(Strike(call, is_creation), -1, real);
}

/// The same for a read or write, which can also fall short.
template <class Real>
ssize_t Transfer(Call call, std::size_t count, Real real) {
  // What is random is needed for the name of a new file.
  const Action action = Strike(call, call == Call::kRandom);
  const std::size_t part = action == Action::kShorten && count > 1 ? count / 2 : count;
  return Perform(action, ssize_t{-1}, [&] { return real(part); });
}

/// A call after which the resource is gone whatever it says.
template <class Real>
int DisturbClose(Real real) {
  const int result = real();
  return Disturb(Call::kClose, -1, [&] { return result; });
}

// ---- The heap ----

/// Stands directly in front of each block.
struct TBlockHead {
  std::uint64_t size;
  std::uint32_t offset;  ///< Of the block from the start of what the C library gave.
  std::uint32_t state;
};
static_assert(sizeof(TBlockHead) == 16);

constexpr std::uint32_t kLive = 0xB10C11FE;
constexpr std::uint32_t kDead = 0xB10CDEAD;
constexpr std::uint64_t kFence = 0xFE9CEFE9CEFE9CE5;
constexpr int kNewByte = 0xA5;
constexpr int kFreedByte = 0x5A;
constexpr std::size_t kUsualAlignment = 16;

TBlockHead* HeadOf(void* block) { return static_cast<TBlockHead*>(block) - 1; }

char* FenceOf(void* block) { return static_cast<char*>(block) + HeadOf(block)->size; }

[[noreturn]] void Accuse(const char* text) {
  static_cast<void>(!write(STDERR_FILENO, text, std::strlen(text)));
  std::abort();
}

void* TakeBlock(std::size_t alignment, std::size_t size) {
  const std::size_t offset = std::max(alignment, kUsualAlignment);
  const std::size_t surplus = 2 * offset + sizeof kFence;
  if (size > PTRDIFF_MAX - surplus) {
    errno = ENOMEM;
    return nullptr;
  }
  auto* const start = static_cast<char*>(__libc_malloc(size + surplus));
  if (start == nullptr) return nullptr;
  const auto address = reinterpret_cast<std::uintptr_t>(start);
  char* const block = start + (offset - address % offset) % offset + offset;
  *HeadOf(block) = {size, static_cast<std::uint32_t>(block - start), kLive};
  std::memset(block, kNewByte, size);
  std::memcpy(FenceOf(block), &kFence, sizeof kFence);
  ++page->report.live_blocks;
  return block;
}

void ReturnBlock(void* block) {
  if (block == nullptr) return;
  TBlockHead* const head = HeadOf(block);
  if (head->state == kDead) Accuse("INJECTOR: a block was freed twice\n");
  if (head->state != kLive) Accuse("INJECTOR: what was freed is no block\n");
  if (std::memcmp(FenceOf(block), &kFence, sizeof kFence) != 0)
    Accuse("INJECTOR: a block was written beyond its end\n");
  head->state = kDead;
  std::memset(block, kFreedByte, head->size);
  --page->report.live_blocks;
  __libc_free(static_cast<char*>(block) - head->offset);
}

void* Allocate(std::size_t alignment, std::size_t size) {
  return Disturb<void*>(Call::kAllocation, nullptr, [=] { return TakeBlock(alignment, size); });
}

// ---- The start of the program ----

void MapPage() {
  if (std::getenv(kPageVariable) == nullptr) return;
  void* const mapped =
      mmap(nullptr, sizeof(TPage), PROT_READ | PROT_WRITE, MAP_SHARED, kPageDescriptor, 0);
  if (mapped == MAP_FAILED) Accuse("INJECTOR: there is no page\n");
  NEXT(close)(kPageDescriptor);
  page = static_cast<TPage*>(mapped);
}

void PrepareMachine(const TPlan& plan) {
  const rlimit limit{plan.limit, plan.limit};
  if (plan.limited_resource >= 0 &&
      setrlimit(static_cast<__rlimit_resource_t>(plan.limited_resource), &limit) != 0)
    Accuse("INJECTOR: the limit cannot be set\n");
  if (plan.user != 0 && (setgid(plan.user) != 0 || setuid(plan.user) != 0))
    Accuse("INJECTOR: the user cannot be changed\n");
}

/// Whether a file or directory may be made at a path. Others are noted and, lest they do harm,
/// refused.
bool IsInOutput(const char* path) {
  const char* const output = page->plan.output;
  const std::size_t length = std::strlen(output);
  if (length == 0 ||
      (std::strncmp(path, output, length) == 0 && (path[length] == '/' || path[length] == '\0')))
    return true;
  page->report.has_strayed = true;
  errno = EPERM;
  return false;
}

using MainFunction = int (*)(int, char**, char**);
MainFunction real_main = nullptr;

int MainUnderTest(int argument_count, char** arguments, char** environment) {
  MapPage();
  PrepareMachine(page->plan);
  page->report.has_reached_main = true;
  is_armed = true;
  return real_main(argument_count, arguments, environment);
}

int OpenFile(const char* path, int flags, mode_t mode) {
  const bool is_unnamed = (flags & O_TMPFILE) == O_TMPFILE;
  const bool is_creation = is_unnamed || (flags & O_CREAT) != 0;
  return DisturbCreation(Call::kOpen, is_creation, [=] {
    if (is_unnamed && page->plan.machine == Machine::kNoUnnamedFiles) {
      errno = EOPNOTSUPP;
      return -1;
    }
    if (is_creation && !IsInOutput(path)) return -1;
    return NEXT(open)(path, flags, mode);
  });
}

}  // namespace

extern "C" {

using StartMain = int(MainFunction, int, char**, void (*)(), void (*)(), void (*)(), void*);

// NOLINTNEXTLINE(bugprone-reserved-identifier)
int __libc_start_main(MainFunction main, int argument_count, char** arguments, void (*init)(),
                      void (*fini)(), void (*rtld_fini)(), void* stack_end) {
  real_main = main;
  auto* const next = reinterpret_cast<StartMain*>(dlsym(RTLD_NEXT, "__libc_start_main"));
  return next(MainUnderTest, argument_count, arguments, init, fini, rtld_fini, stack_end);
}

// NOLINTNEXTLINE(bugprone-reserved-identifier)
int __cxa_atexit(void (*destroy)(void*), void* object, void* library) {
  is_registering = true;
  const int result = NEXT(__cxa_atexit)(destroy, object, library);
  is_registering = false;
  return result;
}

void* malloc(std::size_t size) { return Allocate(kUsualAlignment, size); }

void free(void* block) {
  const int error = errno;
  ReturnBlock(block);
  errno = error;
}

void* calloc(std::size_t count, std::size_t size) {
  std::size_t total = 0;
  if (__builtin_mul_overflow(count, size, &total)) {
    errno = ENOMEM;
    return nullptr;
  }
  void* const block = Allocate(kUsualAlignment, total);
  if (block != nullptr) std::memset(block, 0, total);
  return block;
}

// The block always moves: whoever keeps an address of the old one is found out.
void* realloc(void* block, std::size_t size) {
  if (block == nullptr) return Allocate(kUsualAlignment, size);
  if (size == 0) {
    free(block);
    return nullptr;
  }
  void* const moved = Allocate(kUsualAlignment, size);
  if (moved == nullptr) return nullptr;
  std::memcpy(moved, block, std::min<std::size_t>(size, HeadOf(block)->size));
  ReturnBlock(block);
  return moved;
}

void* reallocarray(void* block, std::size_t count, std::size_t size) {
  std::size_t total = 0;
  if (!__builtin_mul_overflow(count, size, &total)) return realloc(block, total);
  errno = ENOMEM;
  return nullptr;
}

void* memalign(std::size_t alignment, std::size_t size) { return Allocate(alignment, size); }

void* aligned_alloc(std::size_t alignment, std::size_t size) { return Allocate(alignment, size); }

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  void* const taken = Allocate(alignment, size);
  if (taken == nullptr) return ENOMEM;
  *block = taken;
  return 0;
}

std::size_t malloc_usable_size(void* block) { return block == nullptr ? 0 : HeadOf(block)->size; }

int open(const char* path, int flags, ...) {
  va_list list;
  va_start(list, flags);
  const mode_t mode =  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized)
      (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(list, mode_t) : 0;
  va_end(list);
  return OpenFile(path, flags, mode);
}

int open64(const char* path, int flags, ...) __attribute__((alias("open")));

ssize_t read(int file, void* buffer, std::size_t count) {
  return Transfer(Call::kRead, count,
                  [=](std::size_t part) { return NEXT(read)(file, buffer, part); });
}

ssize_t write(int file, const void* buffer, std::size_t count) {
  return Transfer(Call::kWrite, count,
                  [=](std::size_t part) { return NEXT(write)(file, buffer, part); });
}

int close(int file) {
  return DisturbClose([=] { return NEXT(close)(file); });
}

off_t lseek(int file, off_t offset, int origin) noexcept {
  return Disturb(Call::kSeek, off_t{-1}, [=] { return NEXT(lseek)(file, offset, origin); });
}

int stat(const char* path, struct stat* info) noexcept {
  using Stat = int(const char*, struct stat*);
  static Stat* const next = Next(static_cast<Stat*>(nullptr), "stat");
  return Disturb(Call::kStat, -1, [=] { return next(path, info); });
}

int lstat(const char* path, struct stat* info) noexcept {
  return Disturb(Call::kStat, -1, [=] { return NEXT(lstat)(path, info); });
}

int fstat(int file, struct stat* info) noexcept {
  return Disturb(Call::kStat, -1, [=] { return NEXT(fstat)(file, info); });
}

int fstatat(int directory, const char* path, struct stat* info, int flags) noexcept {
  return Disturb(Call::kStat, -1, [=] { return NEXT(fstatat)(directory, path, info, flags); });
}

DIR* opendir(const char* path) {
  return Disturb<DIR*>(Call::kOpenDirectory, nullptr, [=] { return NEXT(opendir)(path); });
}

dirent* readdir(DIR* directory) {
  return Disturb<dirent*>(Call::kReadDirectory, nullptr, [=] { return NEXT(readdir)(directory); });
}

int closedir(DIR* directory) {
  return DisturbClose([=] { return NEXT(closedir)(directory); });
}

int chdir(const char* path) noexcept {
  return Disturb(Call::kEnterDirectory, -1, [=] { return NEXT(chdir)(path); });
}

int mkdir(const char* path, mode_t mode) noexcept {
  return Disturb(Call::kMakeDirectory, -1,
                 [=] { return IsInOutput(path) ? NEXT(mkdir)(path, mode) : -1; });
}

int rmdir(const char* path) noexcept {
  return Disturb(Call::kRemoveDirectory, -1, [=] { return NEXT(rmdir)(path); });
}

char* getcwd(char* buffer, std::size_t size) noexcept {
  return Disturb<char*>(Call::kWorkingDirectory, nullptr,
                        [=] { return NEXT(getcwd)(buffer, size); });
}

int linkat(int from, const char* path, int to, const char* name, int flags) noexcept {
  return DisturbCreation(Call::kLink, true, [=] {
    if (page->plan.machine == Machine::kNoLinks) {
      errno = EPERM;
      return -1;
    }
    if (!IsInOutput(name)) return -1;
    return NEXT(linkat)(from, path, to, name, flags);
  });
}

int rename(const char* from, const char* to) noexcept {
  return DisturbCreation(Call::kRename, true,
                         [=] { return IsInOutput(to) ? NEXT(rename)(from, to) : -1; });
}

int renameat2(int from, const char* path, int to, const char* name, unsigned flags) noexcept {
  return DisturbCreation(Call::kRename, true, [=] {
    return IsInOutput(name) ? NEXT(renameat2)(from, path, to, name, flags) : -1;
  });
}

int unlink(const char* path) noexcept {
  return Disturb(Call::kUnlink, -1, [=] { return NEXT(unlink)(path); });
}

ssize_t getrandom(void* buffer, std::size_t size, unsigned flags) {
  return Transfer(Call::kRandom, size,
                  [=](std::size_t part) { return NEXT(getrandom)(buffer, part, flags); });
}

int getentropy(void* buffer, std::size_t size) {
  return Disturb(Call::kRandom, -1, [=] { return NEXT(getentropy)(buffer, size); });
}

sighandler_t signal(int number, sighandler_t handler) noexcept {
  return Disturb(Call::kSignal, SIG_ERR, [=] { return NEXT(signal)(number, handler); });
}

FILE* fopen(const char* path, const char* mode) {
  return Disturb<FILE*>(Call::kStreamOpen, nullptr, [=] { return NEXT(fopen)(path, mode); });
}

std::size_t fwrite(const void* bytes, std::size_t size, std::size_t count, FILE* stream) {
  return Disturb(Call::kStreamWrite, std::size_t{0},
                 [=] { return NEXT(fwrite)(bytes, size, count, stream); });
}

}  // extern "C"
