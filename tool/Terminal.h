#pragma once

#include <cstddef>

namespace zaf {

/// Whether standard error is a terminal that takes escape sequences.
[[nodiscard]] bool IsErrorTerminal();

/// Whether standard output is one.
[[nodiscard]] bool IsOutputTerminal();

/// Columns of the terminal of standard error; 80 when that is unknown.
[[nodiscard]] std::size_t GetTerminalWidth();

/// Leaves the bytes of standard output as they are written. A console on Windows shows UTF-8 until
/// the process ends.
void PrepareOutput();

/// Processors that this process may use; at least 1.
[[nodiscard]] unsigned GetProcessorCount();

}  // namespace zaf
