#pragma once

#include <cstddef>

namespace zaf {

/// Whether standard error is a terminal that supports escape sequences.
[[nodiscard]] bool IsErrorTerminal();

/// Whether standard output is a terminal.
[[nodiscard]] bool IsOutputTerminal();

/// Columns of the terminal of standard error; 80 if unknown.
[[nodiscard]] std::size_t GetTerminalWidth();

/// Makes standard output write bytes unchanged. On Windows a console shows UTF-8 until the process
/// ends.
void PrepareOutput();

/// The number of processors that this process may use; at least 1.
[[nodiscard]] unsigned GetProcessorCount();

}  // namespace zaf
