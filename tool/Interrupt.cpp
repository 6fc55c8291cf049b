#include "tool/Interrupt.h"

#include <atomic>
#include <csignal>

namespace zaf {
namespace {

std::atomic<int> interrupt{0};
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void OnInterrupt(int number) {
  interrupt = number == SIGTERM ? SIGTERM : SIGINT;
  std::signal(number, SIG_DFL);
}

}  // namespace

void NoteInterrupts() {
  for (const int number : {SIGINT, SIGTERM}) std::signal(number, OnInterrupt);
#ifdef SIGBREAK  // Ctrl-Break on Windows, and closing the console.
  std::signal(SIGBREAK, OnInterrupt);
#endif
}

int GetInterrupt() { return interrupt; }

}  // namespace zaf
