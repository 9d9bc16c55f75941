#include "SimulatorClient.h"
#include "Text.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QDebug>
#include <QEventLoop>
#include <QTimer>
#include <QUuid>

namespace test_support {

namespace {
const QString simulatorName = "com.tactora.Simulator"_s;
const QString simulatorPath = "/simulator"_s;

QVariant wrapped(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

} // namespace

SimulatorClient::SimulatorClient(const QString &address, Timings timings, QObject *parent)
    : QObject(parent)
    , m_connectionName("simulator-client-"_s + QUuid::createUuid().toString(QUuid::Id128))
    , m_connection(QDBusConnection::connectToBus(address, m_connectionName))
    , m_process(std::make_unique<ChildProcess>())
{
    start(address, timings);
}

SimulatorClient::~SimulatorClient()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void SimulatorClient::start(const QString &address, Timings timings)
{
    m_connection.connect(simulatorName, simulatorPath, simulatorName, "called"_s, this,
                         SIGNAL(called(QString)));
    m_connection.connect(simulatorName, simulatorPath, simulatorName, "spoke"_s, this,
                         SIGNAL(spoke(QString, QVariantMap)));
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

QDBusMessage SimulatorClient::request(const QString &member, const QVariantList &arguments) const
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(simulatorName, simulatorPath, simulatorName, member);
    message.setArguments(arguments);
    return message;
}

QDBusMessage SimulatorClient::call(const QString &member, const QVariantList &arguments) const
{
    QDBusMessage reply = m_connection.call(request(member, arguments), QDBus::Block, defaultTimeoutMs);
    if (reply.type() == QDBusMessage::ErrorMessage) {
        qCritical() << "Simulator:" << member << "failed:" << reply.errorMessage();
    }
    return reply;
}

QDBusObjectPath SimulatorClient::addService(const QString &identifier, const QVariantMap &properties)
{
    return QDBusReply<QDBusObjectPath>(call("addService"_s, {identifier, properties}));
}

void SimulatorClient::addServices(uint first, uint count)
{
    call("addServices"_s, {first, count});
}

void SimulatorClient::removeService(const QString &identifier)
{
    call("removeService"_s, {identifier});
}

void SimulatorClient::setServiceProperty(const QString &identifier, const QString &name,
                                         const QVariant &value, bool silent)
{
    call("setServiceProperty"_s, {identifier, name, wrapped(value), silent});
}

void SimulatorClient::removeServiceProperty(const QString &identifier, const QString &name)
{
    call("removeServiceProperty"_s, {identifier, name});
}

QVariantMap SimulatorClient::serviceProperties(const QString &identifier)
{
    return QDBusReply<QVariantMap>(call("serviceProperties"_s, {identifier}));
}

QStringList SimulatorClient::services()
{
    return QDBusReply<QStringList>(call("services"_s));
}

void SimulatorClient::addTechnology(const QString &name, const QVariantMap &properties)
{
    call("addTechnology"_s, {name, properties});
}

void SimulatorClient::removeTechnology(const QString &name)
{
    call("removeTechnology"_s, {name});
}

void SimulatorClient::setTechnologyProperty(const QString &name, const QString &property,
                                            const QVariant &value, bool silent)
{
    call("setTechnologyProperty"_s, {name, property, wrapped(value), silent});
}

void SimulatorClient::removeTechnologyProperty(const QString &name, const QString &property)
{
    call("removeTechnologyProperty"_s, {name, property});
}

void SimulatorClient::emitSignal(const QString &path, const QString &interface, const QString &member,
                                 const QVariantList &arguments)
{
    call("emitSignal"_s,
         {QVariant::fromValue(QDBusObjectPath(path)), interface, member, QVariant(arguments)});
}

QString SimulatorClient::addNetwork(const QVariantMap &options)
{
    return QDBusReply<QString>(call("addNetwork"_s, {options}));
}

void SimulatorClient::removeNetwork(const QString &ssid)
{
    call("removeNetwork"_s, {ssid});
}

void SimulatorClient::setInReach(const QString &ssid, bool inReach)
{
    call("setInReach"_s, {ssid, inReach});
}

void SimulatorClient::setCable(bool plugged, const QVariantMap &options)
{
    call("setCable"_s, {plugged, options});
}

void SimulatorClient::setAddressesServed(bool served)
{
    call("setAddressesServed"_s, {served});
}

void SimulatorClient::setHardwareAddress(const QString &address)
{
    call("setHardwareAddress"_s, {address});
}

void SimulatorClient::setConnmanDirectory(const QString &path)
{
    call("setConnmanDirectory"_s, {path});
}

void SimulatorClient::setTiming(const QString &name, int milliseconds)
{
    call("setTiming"_s, {name, milliseconds});
}

void SimulatorClient::setPresent(const QString &name, bool present)
{
    call("setPresent"_s, {name, present});
}

void SimulatorClient::restartConnman()
{
    call("restartConnman"_s);
}

void SimulatorClient::stopConnman()
{
    call("stopConnman"_s);
}

void SimulatorClient::startConnman()
{
    call("startConnman"_s);
}

void SimulatorClient::eraseConnman()
{
    call("eraseConnman"_s);
}

QString SimulatorClient::storedPassphrase(const QString &identifier)
{
    return QDBusReply<QString>(call("storedPassphrase"_s, {identifier}));
}

void SimulatorClient::setConfigurationReply(const QVariantMap &reply)
{
    call("setConfigurationReply"_s, {reply});
}

void SimulatorClient::setSerialNumber(int serialNumber)
{
    call("setSerialNumber"_s, {serialNumber});
}

Fault SimulatorClient::injectFault(const QString &interface, const QString &member, const FaultKind &kind,
                                   const QString &path, uint count)
{
    const QDBusReply<uint> id = call("injectFault"_s, {interface, member, path, count, kind.toMap()});
    return {*this, id, interface + QLatin1Char('.') + member + QLatin1Char(' ') + path};
}

uint SimulatorClient::faultFired(uint id)
{
    return QDBusReply<uint>(call("faultFired"_s, {id}));
}

void SimulatorClient::clearFaults()
{
    call("clearFaults"_s);
}

QStringList SimulatorClient::calls()
{
    return QDBusReply<QStringList>(call("calls"_s));
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

void SimulatorClient::clearCalls()
{
    call("clearCalls"_s);
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

QStringList SimulatorClient::speech()
{
    return QDBusReply<QStringList>(call("speech"_s));
}

QList<QDBusObjectPath> SimulatorClient::agents()
{
    return QDBusReply<QList<QDBusObjectPath>>(call("agents"_s));
}

SimulatorClient::AgentReply SimulatorClient::callAgent(const QString &member, const QVariantList &arguments)
{
    QEventLoop loop;
    QDBusPendingCallWatcher watcher(
        m_connection.asyncCall(request("callAgent"_s, {member, QVariant(arguments)}), defaultTimeoutMs));
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

bool SimulatorClient::quit()
{
    call("quit"_s);
    return m_process->waitForFinished(defaultTimeoutMs) && m_process->exitStatus() == QProcess::NormalExit &&
           m_process->exitCode() == 0;
}

} // namespace test_support
