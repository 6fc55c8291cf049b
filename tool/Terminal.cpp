#include "tool/Terminal.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <thread>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif
#ifdef __linux__
#include <sched.h>
#endif

namespace zaf {
namespace {

constexpr std::size_t kUsualWidth = 80;

}  // namespace

bool IsErrorTerminal() {
#ifdef _WIN32
  // Colours and progress use escape sequences, which older consoles do not support.
  const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  if (GetConsoleMode(console, &mode) == 0 ||
      SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) == 0)
    return false;
  // Names in messages are UTF-8.
  static const UINT code_page = GetConsoleOutputCP();
  std::atexit([] { SetConsoleOutputCP(code_page); });
  return SetConsoleOutputCP(CP_UTF8) != 0;
#else
  return isatty(STDERR_FILENO) != 0;
#endif
}

bool IsOutputTerminal() {
#ifdef _WIN32
  return _isatty(_fileno(stdout)) != 0;
#else
  return isatty(STDOUT_FILENO) != 0;
#endif
}

std::size_t GetTerminalWidth() {
#ifdef _WIN32
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) != 0)
    return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
#else
  winsize size{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
#endif
  return kUsualWidth;
}

void SetBinaryOutput() {
#ifdef _WIN32
  _setmode(_fileno(stdout), _O_BINARY);
#endif
}

unsigned GetProcessorCount() {
#ifdef __linux__
  // Unlike this, the standard library counts all processors of the machine.
  cpu_set_t allowed;
  if (sched_getaffinity(0, sizeof allowed, &allowed) == 0)
    return static_cast<unsigned>(std::max(CPU_COUNT(&allowed), 1));
#endif
  return std::max(std::thread::hardware_concurrency(), 1U);
}

}  // namespace zaf
