#include "megset/platform/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace megset {

bool isTerminal(int descriptor)
{
    return isatty(descriptor) == 1;
}

int terminalWidth(int descriptor)
{
    winsize size{};
    return ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

} // namespace megset
