#include "QuitSignals.h"

#include <QCoreApplication>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array<int, 2> Signals{SIGTERM, SIGINT};

/// How long the event loop has to come to its end.
constexpr unsigned GraceSeconds = 3;

/// A pipe, because little but write() is allowed inside a signal handler.
struct WakePipe
{
    int readEnd = -1;
    int writeEnd = -1;
};
WakePipe wakePipe;

int openWakePipe()
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        qFatal("Unable to create a pipe: %s", qUtf8Printable(qt_error_string()));
    }
    wakePipe = {ends[0], ends[1]};
    return wakePipe.readEnd;
}

extern "C" void requestQuit(int /*signal*/)
{
    const int interruptedErrno = errno;
    for (const int signal : Signals) {
        std::signal(signal, SIG_DFL);
    }
    alarm(GraceSeconds);
    const char wake = 0;
    [[maybe_unused]] const ssize_t written = write(wakePipe.writeEnd, &wake, sizeof wake);
    errno = interruptedErrno;
}

extern "C" void endNow(int /*signal*/)
{
    _exit(EXIT_SUCCESS);
}

} // namespace

QuitSignals::QuitSignals()
    : m_notifier(openWakePipe(), QSocketNotifier::Read)
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] {
        m_notifier.setEnabled(false);
        QCoreApplication::quit();
    });
    std::signal(SIGALRM, endNow);
    for (const int signal : Signals) {
        std::signal(signal, requestQuit);
    }
}
