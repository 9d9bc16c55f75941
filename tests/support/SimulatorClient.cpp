#include "SimulatorClient.h"
#include "Text.h"

#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDebug>
#include <QEventLoop>
#include <QTimer>
#include <QUuid>

namespace test_support {

namespace {
const QString simulatorName = "com.tactora.Simulator"_s;
const QString simulatorPath = "/simulator"_s;
} // namespace

SimulatorClient::SimulatorClient(const QString &address, Timings timings, QObject *parent)
    : QObject(parent)
    , m_connectionName("simulator-client-"_s + QUuid::createUuid().toString(QUuid::Id128))
    , m_connection(QDBusConnection::connectToBus(address, m_connectionName))
    , m_script(simulatorName, simulatorPath, m_connection)
    , m_process(std::make_unique<ChildProcess>())
{
    m_script.setTimeout(defaultTimeoutMs);
    connect(&m_script, &ScriptProxy::called, this, &SimulatorClient::called);
    connect(&m_script, &ScriptProxy::spoke, this, &SimulatorClient::spoke);
    start(address, timings);
}

SimulatorClient::~SimulatorClient()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void SimulatorClient::start(const QString &address, Timings timings)
{
    QStringList arguments{"--address"_s, address};
    if (timings == Timings::Fast) {
        arguments.append("--fast"_s);
    }
    m_process->setProcessChannelMode(QProcess::ForwardedChannels);
    m_process->start(QStringLiteral(SIMULATOR_PROGRAM), arguments);
    m_ready = waitForName();
    if (!m_ready) {
        qCritical() << "Simulator: not there:" << m_process->errorString();
    }
}

// The simulator claims this name last, so everything it simulates is there by then.
bool SimulatorClient::waitForName()
{
    QEventLoop loop;
    QDBusServiceWatcher watcher(simulatorName, m_connection, QDBusServiceWatcher::WatchForRegistration);
    connect(&watcher, &QDBusServiceWatcher::serviceRegistered, &loop, &QEventLoop::quit);
    connect(m_process.get(), &QProcess::errorOccurred, &loop, &QEventLoop::quit);
    connect(m_process.get(), qOverload<int, QProcess::ExitStatus>(&QProcess::finished), &loop,
            &QEventLoop::quit);
    QTimer::singleShot(defaultTimeoutMs, &loop, &QEventLoop::quit);
    QDBusConnectionInterface *bus = m_connection.interface();
    if (bus != nullptr && !bus->isServiceRegistered(simulatorName)) {
        loop.exec();
    }
    return bus != nullptr && bus->isServiceRegistered(simulatorName);
}

void SimulatorClient::reportRefusal(const QDBusError &error)
{
    if (error.isValid()) {
        qCritical() << "Simulator:" << error.message();
    }
}

Fault SimulatorClient::injectFault(const QString &interface, const QString &member, const FaultKind &kind,
                                   const QString &path, uint count)
{
    const uint id = answered(m_script.injectFault(interface, member, path, count, kind.toMap()));
    return {*this, id, interface + QLatin1Char('.') + member + QLatin1Char(' ') + path};
}

QStringList SimulatorClient::callsStartingWith(const QString &prefix)
{
    QStringList result;
    for (const QString &line : calls()) {
        if (line.startsWith(prefix)) {
            result.append(line);
        }
    }
    return result;
}

bool SimulatorClient::waitForCall(const QString &line, int timeoutMs)
{
    QEventLoop loop;
    connect(this, &SimulatorClient::called, &loop, [&loop, &line](const QString &recorded) {
        if (recorded.startsWith(line)) {
            loop.quit();
        }
    });
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    if (callsStartingWith(line).isEmpty()) {
        loop.exec();
    }
    return !callsStartingWith(line).isEmpty();
}

SimulatorClient::AgentReply SimulatorClient::callAgent(const QString &member, const QVariantList &arguments)
{
    QEventLoop loop;
    const QDBusPendingCallWatcher watcher(m_script.callAgent(member, arguments));
    connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    if (!watcher.isFinished()) {
        loop.exec();
    }
    const QDBusPendingReply<QVariantList, QString> reply = watcher;
    if (reply.isError()) {
        return {{}, reply.error().name() + ": "_s + reply.error().message()};
    }
    return {reply.argumentAt<0>(), reply.argumentAt<1>()};
}

} // namespace test_support
