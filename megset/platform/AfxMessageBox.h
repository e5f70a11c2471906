#pragma once

#include "megset/platform/CString.h"

namespace megset {

inline constexpr unsigned MB_OK = 0;    ///< type of a message with one button
inline constexpr unsigned MB_YESNO = 4; ///< type of a question

inline constexpr int IDOK = 1;     ///< answer to a message
inline constexpr int IDCANCEL = 2; ///< answer when a dialog is left
inline constexpr int IDYES = 6;    ///< answer to a question
inline constexpr int IDNO = 7;     ///< answer to a question

/// True when a message box of this type asks yes or no; icons and the like, in the higher bits, do not matter.
constexpr bool isQuestion(unsigned type)
{
    return (type & 0xFU) == MB_YESNO;
}

/// Shows a text to the user and waits for the answer: IDOK for MB_OK, IDYES or IDNO for MB_YESNO.
int AfxMessageBox(const CString& text, unsigned type = MB_OK);

/// Shows `text` with an OK button and gives 0, the answer of an operation that failed.
int fail(const CString& text);

} // namespace megset
