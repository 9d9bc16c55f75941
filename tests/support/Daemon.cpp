#include "Daemon.h"

#include "EventWait.h"
#include <csignal>
#include <QFile>
#include <QTest>

namespace test_support {

Daemon::Daemon(QString busAddress, QObject *parent)
    : QObject(parent)
    , m_busAddress(std::move(busAddress))
{
    connect(&m_process, &QProcess::readyReadStandardOutput, this,
            [this] { m_output += m_process.readAllStandardOutput(); });
    connect(&m_process, &QProcess::readyReadStandardError, this,
            [this] { m_log.add(m_process.readAllStandardError()); });
}

Daemon::~Daemon()
{
    checkEnd();
    if (QTest::currentTestFailed()) {
        m_log.print();
    }
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
    variables << QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS=") + m_busAddress;
    variables << QStringLiteral("QT_MESSAGE_PATTERN=") + DaemonLog::messagePattern();
    if (!m_loggingRules.isEmpty()) {
        variables << QStringLiteral("QT_LOGGING_RULES=") + m_loggingRules;
    }
    return variables;
}

bool Daemon::start(const QStringList &arguments)
{
    const QStringList command = QStringList(QStringLiteral(DAEMON_PROGRAM)) + arguments;
    m_process.start(QStringLiteral("bwrap"), m_sandbox.namespaceArguments(environment()) + command);
    return m_process.waitForStarted(eventTimeoutMs);
}

qint64 Daemon::processId() const
{
    // The process started is bwrap, which stays as the parent.
    QFile children(QStringLiteral("/proc/%1/task/%1/children").arg(m_process.processId()));
    return children.open(QIODevice::ReadOnly) ? children.readAll().trimmed().toLongLong() : 0;
}

bool Daemon::sendSignal(int signal) const
{
    const qint64 process = processId();
    return process > 0 && kill(static_cast<pid_t>(process), signal) == 0;
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

} // namespace test_support
