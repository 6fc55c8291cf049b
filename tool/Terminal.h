#pragma once

#include <cstddef>
#include <cstdio>

namespace zaf {

/// Whether a standard stream is a terminal that supports escape sequences.
[[nodiscard]] bool IsTerminal(std::FILE* stream);

/// Columns of the terminal of standard error; 80 if unknown.
[[nodiscard]] std::size_t GetTerminalWidth();

/// Makes standard output write bytes unchanged. On Windows a console shows UTF-8 until the process
/// ends.
void PrepareOutput();

/// The number of processors that this process may use; at least 1.
[[nodiscard]] unsigned GetProcessorCount();

}  // namespace zaf
