#pragma once
// Text as the text files hold it, for tests.

#include "tests/kit/ByteBuilder.h"

namespace megset {

/// One piece: its characters and the terminating zero.
inline ByteBuilder textPiece(const CString& text)
{
    ByteBuilder bytes;
    for (const char16_t unit : text.view())
        bytes.u16(unit);
    return bytes.u16(0);
}

} // namespace megset
