#include "tool/Terminal.h"

#include <algorithm>
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

bool IsTerminal(std::FILE* stream) {
#ifdef _WIN32
  // Older consoles do not support escape sequences.
  const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
  DWORD mode = 0;
  return GetConsoleMode(console, &mode) != 0 &&
         SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
#else
  return isatty(fileno(stream)) != 0;
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

void PrepareOutput() {
#ifdef _WIN32
  _setmode(_fileno(stdout), _O_BINARY);
  // The C library writes to a console byte by byte, which would split characters.
  std::setvbuf(stdout, nullptr, _IOFBF, BUFSIZ);
  static const UINT code_page = GetConsoleOutputCP();
  if (code_page == 0) return;  // No console is attached.
  std::atexit([] {
    std::fflush(stdout);
    std::fflush(stderr);
    SetConsoleOutputCP(code_page);
  });
  SetConsoleOutputCP(CP_UTF8);
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
