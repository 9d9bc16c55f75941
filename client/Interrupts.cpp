#include "Interrupts.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

// Little but write() is allowed inside a signal handler.
int pipeToWrite = -1;

int openPipe()
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        qFatal("Unable to create a pipe: %s", qUtf8Printable(qt_error_string()));
    }
    pipeToWrite = ends[1];
    return ends[0];
}

extern "C" void noteSignal(int signalNumber)
{
    const int interruptedErrno = errno;
    const auto number = static_cast<unsigned char>(signalNumber);
    [[maybe_unused]] const ssize_t written = write(pipeToWrite, &number, sizeof number);
    errno = interruptedErrno;
}

} // namespace

Interrupts::Interrupts(QObject *parent)
    : QObject(parent)
    , m_pipe(openPipe(), QSocketNotifier::Read)
{
    connect(&m_pipe, &QSocketNotifier::activated, this, &Interrupts::readPipe);
    struct sigaction action = {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        sigaction(number, &action, nullptr);
    }
}

void Interrupts::readPipe()
{
    unsigned char number = 0;
    while (read(static_cast<int>(m_pipe.socket()), &number, sizeof number) == sizeof number) {
        m_signalNumber = number;
        emit interrupted(number);
    }
}
