#pragma once

namespace zaf {

/// From now on the first SIGINT or SIGTERM is only recorded; the second one ends the process. On
/// Windows Ctrl-C is SIGINT, and so are Ctrl-Break and closing the console.
void NoteInterrupts();

/// The number of the recorded signal; 0 before any.
[[nodiscard]] int GetInterrupt();

}  // namespace zaf
