#include "SimulatorClient.h"

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
const QString simulatorName = QStringLiteral("com.tactora.Simulator");
const QString simulatorPath = QStringLiteral("/simulator");

QVariant wrapped(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

} // namespace

SimulatorClient::SimulatorClient(const QString &address, Timings timings, QObject *parent)
    : QObject(parent)
    , m_connectionName(QStringLiteral("simulator-client-") + QUuid::createUuid().toString(QUuid::Id128))
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
    m_connection.connect(simulatorName, simulatorPath, simulatorName, QStringLiteral("called"), this,
                         SIGNAL(called(QString)));
    m_connection.connect(simulatorName, simulatorPath, simulatorName, QStringLiteral("spoke"), this,
                         SIGNAL(spoke(QString, QVariantMap)));
    QStringList arguments{QStringLiteral("--address"), address};
    if (timings == Timings::Fast) {
        arguments.append(QStringLiteral("--fast"));
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
    return QDBusReply<QDBusObjectPath>(call(QStringLiteral("addService"), {identifier, properties}));
}

void SimulatorClient::addServices(uint first, uint count)
{
    call(QStringLiteral("addServices"), {first, count});
}

void SimulatorClient::removeService(const QString &identifier)
{
    call(QStringLiteral("removeService"), {identifier});
}

void SimulatorClient::setServiceProperty(const QString &identifier, const QString &name,
                                         const QVariant &value, bool silent)
{
    call(QStringLiteral("setServiceProperty"), {identifier, name, wrapped(value), silent});
}

void SimulatorClient::removeServiceProperty(const QString &identifier, const QString &name)
{
    call(QStringLiteral("removeServiceProperty"), {identifier, name});
}

QVariantMap SimulatorClient::serviceProperties(const QString &identifier)
{
    return QDBusReply<QVariantMap>(call(QStringLiteral("serviceProperties"), {identifier}));
}

QStringList SimulatorClient::services()
{
    return QDBusReply<QStringList>(call(QStringLiteral("services")));
}

void SimulatorClient::addTechnology(const QString &name, const QVariantMap &properties)
{
    call(QStringLiteral("addTechnology"), {name, properties});
}

void SimulatorClient::removeTechnology(const QString &name)
{
    call(QStringLiteral("removeTechnology"), {name});
}

void SimulatorClient::setTechnologyProperty(const QString &name, const QString &property,
                                            const QVariant &value, bool silent)
{
    call(QStringLiteral("setTechnologyProperty"), {name, property, wrapped(value), silent});
}

void SimulatorClient::removeTechnologyProperty(const QString &name, const QString &property)
{
    call(QStringLiteral("removeTechnologyProperty"), {name, property});
}

void SimulatorClient::emitSignal(const QString &path, const QString &interface, const QString &member,
                                 const QVariantList &arguments)
{
    call(QStringLiteral("emitSignal"),
         {QVariant::fromValue(QDBusObjectPath(path)), interface, member, QVariant(arguments)});
}

QString SimulatorClient::addNetwork(const QVariantMap &options)
{
    return QDBusReply<QString>(call(QStringLiteral("addNetwork"), {options}));
}

void SimulatorClient::removeNetwork(const QString &ssid)
{
    call(QStringLiteral("removeNetwork"), {ssid});
}

void SimulatorClient::setInReach(const QString &ssid, bool inReach)
{
    call(QStringLiteral("setInReach"), {ssid, inReach});
}

void SimulatorClient::setCable(bool plugged, const QVariantMap &options)
{
    call(QStringLiteral("setCable"), {plugged, options});
}

void SimulatorClient::setAddressesServed(bool served)
{
    call(QStringLiteral("setAddressesServed"), {served});
}

void SimulatorClient::setHardwareAddress(const QString &address)
{
    call(QStringLiteral("setHardwareAddress"), {address});
}

void SimulatorClient::setConnmanDirectory(const QString &path)
{
    call(QStringLiteral("setConnmanDirectory"), {path});
}

void SimulatorClient::setTiming(const QString &name, int milliseconds)
{
    call(QStringLiteral("setTiming"), {name, milliseconds});
}

void SimulatorClient::setPresent(const QString &name, bool present)
{
    call(QStringLiteral("setPresent"), {name, present});
}

void SimulatorClient::restartConnman()
{
    call(QStringLiteral("restartConnman"));
}

void SimulatorClient::stopConnman()
{
    call(QStringLiteral("stopConnman"));
}

void SimulatorClient::startConnman()
{
    call(QStringLiteral("startConnman"));
}

void SimulatorClient::eraseConnman()
{
    call(QStringLiteral("eraseConnman"));
}

QString SimulatorClient::storedPassphrase(const QString &identifier)
{
    return QDBusReply<QString>(call(QStringLiteral("storedPassphrase"), {identifier}));
}

void SimulatorClient::setConfigurationReply(const QVariantMap &reply)
{
    call(QStringLiteral("setConfigurationReply"), {reply});
}

void SimulatorClient::setSerialNumber(int serialNumber)
{
    call(QStringLiteral("setSerialNumber"), {serialNumber});
}

Fault SimulatorClient::injectFault(const QString &interface, const QString &member, const FaultKind &kind,
                                   const QString &path, uint count)
{
    const QDBusReply<uint> id =
        call(QStringLiteral("injectFault"), {interface, member, path, count, kind.toMap()});
    return {*this, id, interface + QLatin1Char('.') + member + QLatin1Char(' ') + path};
}

uint SimulatorClient::faultFired(uint id)
{
    return QDBusReply<uint>(call(QStringLiteral("faultFired"), {id}));
}

void SimulatorClient::clearFaults()
{
    call(QStringLiteral("clearFaults"));
}

QStringList SimulatorClient::calls()
{
    return QDBusReply<QStringList>(call(QStringLiteral("calls")));
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
    call(QStringLiteral("clearCalls"));
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
    return QDBusReply<QStringList>(call(QStringLiteral("speech")));
}

QList<QDBusObjectPath> SimulatorClient::agents()
{
    return QDBusReply<QList<QDBusObjectPath>>(call(QStringLiteral("agents")));
}

SimulatorClient::AgentReply SimulatorClient::callAgent(const QString &member, const QVariantList &arguments)
{
    QEventLoop loop;
    QDBusPendingCallWatcher watcher(m_connection.asyncCall(
        request(QStringLiteral("callAgent"), {member, QVariant(arguments)}), defaultTimeoutMs));
    connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    if (!watcher.isFinished()) {
        loop.exec();
    }
    const QDBusPendingReply<QVariantList, QString> reply = watcher;
    if (reply.isError()) {
        return {{}, reply.error().name() + QStringLiteral(": ") + reply.error().message()};
    }
    return {reply.argumentAt<0>(), reply.argumentAt<1>()};
}

bool SimulatorClient::quit()
{
    call(QStringLiteral("quit"));
    return m_process->waitForFinished(defaultTimeoutMs) && m_process->exitStatus() == QProcess::NormalExit &&
           m_process->exitCode() == 0;
}

} // namespace test_support
