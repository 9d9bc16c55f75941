#pragma once

#include <cstdio>
#include <QtGlobal>
#include <termios.h>
#include <unistd.h>

/// While it lives, the terminal does not show what is typed.
class SilentTerminal
{
public:
    explicit SilentTerminal(bool isWanted)
        : m_isSilent(isWanted && tcgetattr(STDIN_FILENO, &m_before) == 0)
    {
        if (m_isSilent) {
            termios silent = m_before;
            silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
            tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
        }
    }
    ~SilentTerminal()
    {
        if (m_isSilent) {
            tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
            std::fputc('\n', stderr); // the one typed was not shown
        }
    }
    Q_DISABLE_COPY_MOVE(SilentTerminal)

private:
    termios m_before = {};
    bool m_isSilent;
};
