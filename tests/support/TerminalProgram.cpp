#include "TerminalProgram.h"

#include "EventWait.h"
#include "Text.h"
#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <QDebug>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace test_support {

namespace {

// Wide enough that no line is broken.
constexpr winsize size = {50, 400, 0, 0};

int openTerminal()
{
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0) {
        qCritical() << "No terminal:" << qt_error_string();
    }
    ioctl(terminal, TIOCSWINSZ, &size);
    return terminal;
}

} // namespace

void TerminalProgram::Process::setupChildProcess()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setsid();
    ioctl(terminal, TIOCSCTTY, 0);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        dup2(terminal, descriptor);
    }
}

TerminalProgram::TerminalProgram(QObject *parent)
    : QObject(parent)
    , m_terminal(openTerminal())
{
    setVariable("TERM"_s, "xterm"_s);
    setVariable("INPUTRC"_s, "/dev/null"_s);
}

TerminalProgram::~TerminalProgram()
{
    m_output.reset();
    close(m_terminal); // which hangs up: an interactive shell takes no notice of SIGTERM
    stopProcess(m_process);
}

void TerminalProgram::setVariable(const QString &name, const QString &value)
{
    QProcessEnvironment environment = m_process.processEnvironment();
    if (environment.isEmpty()) {
        environment = QProcessEnvironment::systemEnvironment();
    }
    environment.insert(name, value);
    m_process.setProcessEnvironment(environment);
}

bool TerminalProgram::start(const QString &program, const QStringList &arguments)
{
    std::array<char, 64> name{};
    ptsname_r(m_terminal, name.data(), name.size());
    m_process.terminal = open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    m_process.setInputChannelMode(QProcess::ForwardedInputChannel);
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.start(program, arguments);
    const bool isStarted = m_process.waitForStarted(eventTimeoutMs);
    close(m_process.terminal);
    m_output = std::make_unique<QSocketNotifier>(m_terminal, QSocketNotifier::Read);
    connect(m_output.get(), &QSocketNotifier::activated, this, &TerminalProgram::read);
    return isStarted;
}

void TerminalProgram::read()
{
    std::array<char, 4096> chunk{};
    const ssize_t length = ::read(m_terminal, chunk.data(), chunk.size());
    if (length <= 0) {
        m_output->setEnabled(false); // the program has closed its side
        return;
    }
    m_shown.append(chunk.data(), static_cast<int>(length));
}

void TerminalProgram::type(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    if (write(m_terminal, bytes.constData(), static_cast<std::size_t>(bytes.size())) != bytes.size()) {
        qCritical() << "The terminal takes nothing:" << qt_error_string();
    }
}

bool TerminalProgram::waitFor(const QString &text)
{
    int found = -1;
    const bool isThere = waitUntil([&] {
        found = shown().indexOf(text, m_read);
        return found >= 0;
    });
    if (isThere) {
        m_read = found + text.size();
    } else {
        qWarning().noquote() << "Shown so far:\n" << shown();
    }
    return isThere;
}

QString TerminalProgram::shown() const
{
    return QString::fromUtf8(m_shown).remove(QLatin1Char('\r'));
}

int TerminalProgram::waitForExit()
{
    if (!waitUntil([this] { return m_process.state() == QProcess::NotRunning; })) {
        return -1;
    }
    while (m_output->isEnabled()) { // what it showed last
        read();
    }
    return m_process.exitStatus() == QProcess::CrashExit ? 128 + m_process.exitCode() : m_process.exitCode();
}

} // namespace test_support
