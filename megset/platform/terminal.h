#pragma once
// The terminal, by file descriptor: 0 standard input, 1 standard output, 2 standard error.

namespace megset {

/// Whether a person sits at the other end.
bool isTerminal(int descriptor);

/// Columns of the terminal; 80 where that can't be told.
int terminalWidth(int descriptor);

} // namespace megset
