#include "apps/cli/dataset/shownLine.h"

#include "megset/platform/terminalText.h"

namespace megset::cli {

std::string shownLine(const std::string& text)
{
    std::string line = showControlCharacters(CString(text)).toUtf8();
    for (char& c : line)
        if (c == '\n' || c == '\t')
            c = ' ';
    return line;
}

} // namespace megset::cli
