// Library for LD_PRELOAD that disturbs one kind of call of a program from the start of its main():
//
//   ZAF2XML_FAULT="CALL FIRST LAST"   calls number FIRST to LAST, counted from 1; CALL is
//       allocation   malloc and similar functions fail with ENOMEM
//       read, write  transfer half of the requested bytes, at least one
//   ZAF2XML_NO_UNNAMED_FILES=1        open() refuses O_TMPFILE, as some file systems do
//   ZAF2XML_REPORT=DESCRIPTOR         where to write, at exit, two native 64-bit numbers: how often
//                                     memory was allocated, and how many blocks were never freed
//
// A getppid() call, which the program never makes, marks the start of main() in a system call
// trace.

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <malloc.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

/// A kind of call in which faults can be injected.
class TCalls {
 public:
  constexpr explicit TCalls(const char* name) : name_(name) {}

  void Arm(const char* fault) {
    const std::size_t size = std::strlen(name_);
    if (std::strncmp(fault, name_, size) == 0 && fault[size] == ' ') {
      char* end = nullptr;
      first_ = std::strtoul(fault + size, &end, 10);
      last_ = std::strtoul(end, nullptr, 10);
    }
    is_armed_ = true;
  }
  /// Counts a call; returns whether it must fail or fall short.
  bool IsDisturbed() {
    const std::uint64_t number = is_armed_ ? ++count_ : 0;
    return number != 0 && first_ <= number && number <= last_;
  }
  [[nodiscard]] std::uint64_t GetCount() const { return count_; }

 private:
  const char* name_;
  bool is_armed_ = false;
  std::uint64_t first_ = 0;
  std::uint64_t last_ = 0;
  std::atomic<std::uint64_t> count_ = 0;
};

constinit TCalls allocations("allocation");
constinit TCalls reads("read");
constinit TCalls writes("write");
constinit std::atomic<std::int64_t> live_blocks = 0;
bool has_unnamed_files = true;

template <class Function>
Function* Next(Function*, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
/// The next definition of a function after this library's: the C library's.
#define NEXT(function)                                      \
  ([] {                                                     \
    static auto* const next = Next(&(function), #function); \
    return next;                                            \
  }())

template <class Allocate>
void* TakeBlock(Allocate allocate) {
  void* const block = allocations.IsDisturbed() ? nullptr : allocate();
  if (block == nullptr) {
    errno = ENOMEM;
  } else {
    ++live_blocks;
  }
  return block;
}

std::size_t Part(TCalls& calls, std::size_t count) {
  return calls.IsDisturbed() ? std::max<std::size_t>(count / 2, 1) : count;
}

void Report() {
  const char* const descriptor = std::getenv("ZAF2XML_REPORT");
  if (descriptor == nullptr) return;
  const std::int64_t numbers[] = {static_cast<std::int64_t>(allocations.GetCount()), live_blocks};
  // Not write(), because its calls are counted.
  const iovec bytes{const_cast<std::int64_t*>(numbers), sizeof numbers};
  const auto number = static_cast<int>(std::strtol(descriptor, nullptr, 10));
  if (writev(number, &bytes, 1) != sizeof numbers) _exit(3);
}
struct TReporter {
  ~TReporter() { Report(); }
} reporter;

using MainFunction = int (*)(int, char**, char**);
using StartMain = int(MainFunction, int, char**, void (*)(), void (*)(), void (*)(), void*);
MainFunction real_main = nullptr;

int MainUnderTest(int argument_count, char** arguments, char** environment) {
  has_unnamed_files = std::getenv("ZAF2XML_NO_UNNAMED_FILES") == nullptr;
  const char* const fault = std::getenv("ZAF2XML_FAULT");
  getppid();
  for (TCalls* const calls : {&allocations, &reads, &writes})
    calls->Arm(fault == nullptr ? "" : fault);
  return real_main(argument_count, arguments, environment);
}

}  // namespace

extern "C" {

// NOLINTNEXTLINE(bugprone-reserved-identifier)
int __libc_start_main(MainFunction main, int argument_count, char** arguments, void (*init)(),
                      void (*fini)(), void (*rtld_fini)(), void* stack_end) {
  real_main = main;
  auto* const next = reinterpret_cast<StartMain*>(dlsym(RTLD_NEXT, "__libc_start_main"));
  return next(MainUnderTest, argument_count, arguments, init, fini, rtld_fini, stack_end);
}

void* malloc(std::size_t size) {
  return TakeBlock([=] { return NEXT(malloc)(size); });
}

// Never fails: only the C library calls it, to register objects that are destroyed at exit. One
// that cannot be registered would seem to leak.
void* calloc(std::size_t count, std::size_t size) {
  void* const block = NEXT(calloc)(count, size);
  if (block != nullptr) ++live_blocks;
  return block;
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return TakeBlock([=] { return NEXT(aligned_alloc)(alignment, size); });
}

void* memalign(std::size_t alignment, std::size_t size) { return aligned_alloc(alignment, size); }

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  *block = aligned_alloc(alignment, size);
  return *block == nullptr ? ENOMEM : 0;
}

void free(void* block) {
  if (block != nullptr) --live_blocks;
  NEXT(free)(block);
}

// The block always moves, so that an outdated pointer to it is detected.
void* realloc(void* block, std::size_t size) {
  void* const moved = malloc(std::max<std::size_t>(size, 1));
  if (moved == nullptr || block == nullptr) return moved;
  std::memcpy(moved, block, std::min(size, malloc_usable_size(block)));
  free(block);
  return moved;
}

int open(const char* path, int flags, ...) {
  va_list list;
  va_start(list, flags);
  const bool is_unnamed = (flags & O_TMPFILE) == O_TMPFILE;
  const mode_t mode =  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized)
      is_unnamed || (flags & O_CREAT) != 0 ? va_arg(list, mode_t) : 0;
  va_end(list);
  if (!is_unnamed || has_unnamed_files) return NEXT(open)(path, flags, mode);
  errno = EOPNOTSUPP;
  return -1;
}

int open64(const char* path, int flags, ...) __attribute__((alias("open")));

ssize_t read(int file, void* buffer, std::size_t count) {
  return NEXT(read)(file, buffer, Part(reads, count));
}

ssize_t write(int file, const void* buffer, std::size_t count) {
  return NEXT(write)(file, buffer, Part(writes, count));
}

}  // extern "C"
