#pragma once
// Texts made fit for a terminal. Texts may come from files, and a file must not command the terminal.

#include "megset/platform/CString.h"

namespace megset {

/// The text with every control character but line feed and tabulator shown as "\x1b", and every character that turns
/// the writing direction or breaks lines unseen as "\u202e". A carriage return before a line feed is left out.
CString showControlCharacters(const CString& text);

/// The longest beginning of the text that takes no more than `columns` on a terminal, where a character from U+1100 on
/// counts two.
CString cutToColumns(const CString& text, int columns);

} // namespace megset
