#include "tool/Interrupt.h"

#include <atomic>
#include <csignal>

#ifdef _WIN32
#include <windows.h>
#endif

namespace zaf {
namespace {

std::atomic<int> interrupt{0};
static_assert(std::atomic<int>::is_always_lock_free);

#ifdef _WIN32

/// The system calls this in a separate thread, and ends the process if it returns false.
BOOL WINAPI OnConsoleEvent(DWORD event) {
  const bool is_first = interrupt.exchange(SIGINT) == 0;
  // When the console is closed, the process ends on return, or a few seconds later.
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
  return is_first;
}

#else

extern "C" void OnInterrupt(int number) {
  interrupt = number;
  std::signal(number, SIG_DFL);
}

#endif

}  // namespace

void NoteInterrupts() {
#ifdef _WIN32
  SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
#else
  for (const int number : {SIGINT, SIGTERM}) std::signal(number, OnInterrupt);
#endif
}

int GetInterrupt() { return interrupt; }

}  // namespace zaf
