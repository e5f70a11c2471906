#pragma once

#include "megset/platform/CString.h"

namespace megset {

inline constexpr unsigned MB_OK = 0;
inline constexpr unsigned MB_YESNO = 4;

inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;
inline constexpr int IDYES = 6;
inline constexpr int IDNO = 7;

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
