#include "megset/platform/terminalText.h"

#include "megset/platform/unicode.h"

namespace megset {
namespace {

bool isControl(char16_t unit)
{
    return (unit < 0x20U && unit != u'\n' && unit != u'\t') || (unit >= 0x7FU && unit <= 0x9FU);
}

bool isHiddenMark(char16_t unit)
{
    const bool turnsDirection = (unit >= 0x202AU && unit <= 0x202EU) || (unit >= 0x2066U && unit <= 0x2069U) ||
                                unit == 0x200EU || unit == 0x200FU || unit == 0x061CU;
    return turnsDirection || unit == 0x2028U || unit == 0x2029U;
}

int columnsOfUnit(char16_t unit)
{
    if (isLowSurrogate(unit))
        return 0; // counted with its first half
    return unit >= 0x1100U ? 2 : 1;
}

} // namespace

CString showControlCharacters(const CString& text)
{
    CString shown;
    for (int i = 0; i < text.GetLength(); ++i) {
        const char16_t unit = text[i];
        if (unit == u'\r' && text[i + 1] == u'\n')
            continue;
        if (isControl(unit))
            shown.AppendFormat("\\x%02x", unit);
        else if (isHiddenMark(unit))
            shown.AppendFormat("\\u%04x", unit);
        else
            shown += unit;
    }
    return shown;
}

CString cutToColumns(const CString& text, int columns)
{
    int length = 0;
    for (int used = 0; length < text.GetLength(); ++length) {
        used += columnsOfUnit(text[length]);
        if (used > columns)
            break;
    }
    return text.Left(length);
}

} // namespace megset
