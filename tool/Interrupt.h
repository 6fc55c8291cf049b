#pragma once

namespace zaf {

/// From now on SIGINT and SIGTERM are only noted, the first time that they come; the second one
/// ends the process. On Windows Ctrl-C is SIGINT, and so are Ctrl-Break and the end of the console.
void NoteInterrupts();

/// The number of the signal that came; 0: none.
[[nodiscard]] int GetInterrupt();

}  // namespace zaf
