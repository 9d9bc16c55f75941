#include "TestDevice.h"

#include <QDBusArgument>
#include <QDBusMetaType>

namespace test_support {

/// One entry of ServicesChanged.
struct ServiceEntry
{
    QDBusObjectPath path;
    QVariantMap properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const ServiceEntry &entry)
{
    argument.beginStructure();
    argument << entry.path << entry.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ServiceEntry &entry)
{
    argument.beginStructure();
    argument >> entry.path >> entry.properties;
    argument.endStructure();
    return argument;
}

} // namespace test_support

Q_DECLARE_METATYPE(test_support::ServiceEntry)

namespace test_support {

namespace {
const QString loadingServices = QStringLiteral("/ net.connman.Manager.GetServices()");
const QString noRadioComplaint = QStringLiteral("default|critical|WLAN not supported on this board.");

void announceChanged(SimulatorClient &simulator, const QList<ServiceEntry> &changed)
{
    qDBusRegisterMetaType<ServiceEntry>();
    qDBusRegisterMetaType<QList<ServiceEntry>>();
    simulator.emitSignal(QStringLiteral("/"), QStringLiteral("net.connman.Manager"),
                         QStringLiteral("ServicesChanged"),
                         {QVariant::fromValue(changed), QVariant::fromValue(QList<QDBusObjectPath>())});
}
} // namespace

bool LonelyDaemon::start(const QStringList &arguments)
{
    return daemon.start(arguments) && client.waitForName();
}

bool TestDevice::start(const QStringList &arguments)
{
    return daemon.start(arguments) && client.waitForName();
}

bool TestDevice::startAndAttach()
{
    if (!start() || !simulator.waitForCall(loadingServices)) {
        return false;
    }
    client.settle();
    return true;
}

void TestDevice::reportState(const QString &identifier, const QString &state)
{
    constexpr bool silently = true;
    simulator.setServiceProperty(identifier, QStringLiteral("State"), state, silently);
    const QDBusObjectPath path(QStringLiteral("/net/connman/service/") + identifier);
    announceChanged(simulator, {{path, {}}});
    client.settle();
}

void TestDevice::announceNothing()
{
    announceChanged(simulator, {});
}

void TestDevice::removeRadio()
{
    commands().script(QStringLiteral("iw list"), {});
}

bool TestDevice::startWithoutRadio()
{
    removeRadio();
    return startAndAttach() && log().takeProblem(noRadioComplaint);
}

} // namespace test_support
