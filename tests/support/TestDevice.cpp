#include "TestDevice.h"
#include "Text.h"

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
const QString loadingServices = "/ net.connman.Manager.GetServices()"_s;
const QString noRadioComplaint = "default|critical|WLAN not supported on this board."_s;

void announceChanged(SimulatorClient &simulator, const QList<ServiceEntry> &changed)
{
    qDBusRegisterMetaType<ServiceEntry>();
    qDBusRegisterMetaType<QList<ServiceEntry>>();
    simulator.emitSignal("/"_s, "net.connman.Manager"_s, "ServicesChanged"_s,
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
    simulator.setServiceProperty(identifier, "State"_s, state, silently);
    const QDBusObjectPath path("/net/connman/service/"_s + identifier);
    announceChanged(simulator, {{path, {}}});
    client.settle();
}

void TestDevice::announceNothing()
{
    announceChanged(simulator, {});
}

void TestDevice::removeRadio()
{
    commands().script("iw list"_s, {});
}

bool TestDevice::startWithoutRadio()
{
    removeRadio();
    return startAndAttach() && log().takeProblem(noRadioComplaint);
}

} // namespace test_support
