#include "Daemon.h"

#include "EventWait.h"
#include "Text.h"
#include <csignal>
#include <QFile>
#include <QTest>

namespace test_support {

Daemon::Daemon(const QString &busAddress, QObject *parent)
    : QObject(parent)
{
    setVariable("DBUS_SYSTEM_BUS_ADDRESS"_s, busAddress);
    setVariable("QT_MESSAGE_PATTERN"_s, DaemonLog::messagePattern());
    m_process.setReadChannel(QProcess::StandardError);
    connect(&m_process, &QProcess::readyReadStandardOutput, this,
            [this] { m_output += m_process.readAllStandardOutput(); });
    connect(&m_process, &QProcess::readyReadStandardError, this,
            [this] { m_log.add(m_process.readAllStandardError()); });
    connect(&m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this, &Daemon::ended);
}

Daemon::~Daemon()
{
    checkEnd();
    endLeftovers();
    if (QTest::currentTestFailed()) {
        m_log.print();
    }
}

DaemonLog &Daemon::log()
{
    constexpr int withoutWaiting = 0;
    while (m_process.waitForReadyRead(withoutWaiting)) {
        // the process's own signal hands over what was read
    }
    return m_log;
}

void Daemon::checkEnd()
{
    if (isRunning()) {
        QVERIFY2(stop(), "the daemon did not end with status 0 after SIGTERM");
    }
    QCOMPARE(m_log.problems(), QStringList());
}

QStringList Daemon::environment() const
{
    QStringList variables = m_sandbox.environment();
    for (auto variable = m_variables.cbegin(); variable != m_variables.cend(); ++variable) {
        variables << variable.key() + QLatin1Char('=') + variable.value();
    }
    return variables;
}

bool Daemon::start(const QStringList &arguments)
{
    const QStringList command = m_wrapper + QStringList(QStringLiteral(DAEMON_PROGRAM)) + arguments;
    m_sandbox.devices().rewriteTriggers();
    m_process.start("bwrap"_s, m_sandbox.namespaceArguments(environment()) + command);
    const bool started = m_process.waitForStarted(eventTimeoutMs);
    m_group = static_cast<pid_t>(m_process.processId());
    return started;
}

qint64 Daemon::processId() const
{
    // The process started is bwrap, which stays as the parent.
    QFile children("/proc/%1/task/%1/children"_s.arg(m_process.processId()));
    return children.open(QIODevice::ReadOnly) ? children.readAll().trimmed().toLongLong() : 0;
}

bool Daemon::sendSignal(int signal) const
{
    const qint64 process = processId();
    return process > 0 && kill(static_cast<pid_t>(process), signal) == 0;
}

bool Daemon::catches(int signal) const
{
    QFile status("/proc/%1/status"_s.arg(processId()));
    status.open(QIODevice::ReadOnly);
    const QString text = QString::fromLatin1(status.readAll());
    const QString caught = text.section("SigCgt:"_s, 1).section(QLatin1Char('\n'), 0, 0).trimmed();
    return (caught.toULongLong(nullptr, 16) >> (signal - 1) & 1U) != 0;
}

int Daemon::waitForExit()
{
    if (!waitUntil([this] { return m_process.state() == QProcess::NotRunning; })) {
        return -1;
    }
    return m_process.exitCode();
}

bool Daemon::stop()
{
    return sendSignal(SIGTERM) && waitForExit() == 0;
}

void Daemon::endLeftovers()
{
    if (m_group > 0) {
        killpg(m_group, SIGKILL);
    }
}

} // namespace test_support
