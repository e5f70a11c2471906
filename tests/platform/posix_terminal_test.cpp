#include "megset/platform/terminal.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace megset::posix_terminal_test {
namespace {

// A terminal without a screen: what is asked of one end is answered by the kernel as for a real one.
class Pseudoterminal
{
public:
    Pseudoterminal()
    {
        m_master = posix_openpt(O_RDWR | O_NOCTTY);
        if (m_master >= 0 && grantpt(m_master) == 0 && unlockpt(m_master) == 0)
            m_terminal = open(ptsname(m_master), O_RDWR | O_NOCTTY);
    }
    Pseudoterminal(const Pseudoterminal&) = delete;
    Pseudoterminal& operator=(const Pseudoterminal&) = delete;
    ~Pseudoterminal()
    {
        close(m_terminal);
        close(m_master);
    }

    int descriptor() const { return m_terminal; }
    void setColumns(unsigned short columns) const
    {
        winsize size{};
        size.ws_col = columns;
        ASSERT_EQ(ioctl(m_terminal, TIOCSWINSZ, &size), 0);
    }

private:
    int m_master = -1;
    int m_terminal = -1;
};

TEST(TerminalQuery, AFileIsNoTerminalAndCountsAsEightyColumnsWide)
{
    const int file = open("/dev/null", O_RDWR);
    ASSERT_GE(file, 0);
    EXPECT_FALSE(isTerminal(file));
    EXPECT_EQ(terminalWidth(file), 80);
    close(file);
}

TEST(TerminalQuery, AClosedDescriptorIsNoTerminal)
{
    EXPECT_FALSE(isTerminal(-1));
    EXPECT_EQ(terminalWidth(-1), 80);
}

TEST(TerminalQuery, ATerminalTellsItsWidth)
{
    const Pseudoterminal terminal;
    if (terminal.descriptor() < 0)
        GTEST_SKIP() << "no pseudoterminal on this system";
    EXPECT_TRUE(isTerminal(terminal.descriptor()));
    terminal.setColumns(132);
    EXPECT_EQ(terminalWidth(terminal.descriptor()), 132);
    terminal.setColumns(0);
    EXPECT_EQ(terminalWidth(terminal.descriptor()), 80);
}

} // namespace
} // namespace megset::posix_terminal_test
