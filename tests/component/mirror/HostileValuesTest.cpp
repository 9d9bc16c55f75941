// Whatever types ConnMan's properties have, the mirror lives on, reports them as unusable and follows the
// next proper ones.

#include "ConnmanManager.h"
#include "ManagerAnnouncements.h"
#include "MirrorWorld.h"
#include "OddValues.h"
#include "Suite.h"

#include <QTest>

using test_support::Fault;
using test_support::FaultKind;
using State = ConnmanService::State;

namespace {

const QLatin1String Service("wifi_020000000000_61_managed_psk");
const QLatin1String ManagerInterface("net.connman.Manager");
const QLatin1String ManagerPath("/");

QString path()
{
    return MirrorWorld::pathOf(Service);
}

/// Values of every shape there is, right ones included: each is wrong somewhere.
QVector<OddValue> anyValues()
{
    QVector<OddValue> values = rawOddValues();
    const QVariantMap dictionary{{QStringLiteral("Method"), QStringLiteral("dhcp")}};
    const QVariantMap deep{
        {QStringLiteral("Interface"), QVariantMap{{QStringLiteral("Interface"), dictionary}}}};
    values.append({"s", QStringLiteral("text")});
    values.append({"i", -7});
    values.append({"y", QVariant::fromValue(uchar(7))});
    values.append({"b", true});
    values.append({"d", 0.5});
    values.append({"as", QStringList{QStringLiteral("a"), QStringLiteral("b")}});
    values.append({"ay", QByteArray("\0\xff", 2)});
    values.append({"a{sv}", dictionary});
    values.append({"empty a{sv}", QVariantMap()});
    values.append({"deep a{sv}", deep});
    values.append({"v", QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(7))))});
    values.append({"o", QVariant::fromValue(QDBusObjectPath(QStringLiteral("/x")))});
    values.append({"long s", QString(1 << 20, QLatin1Char('x'))});
    return values;
}

void addAnyValueRows()
{
    QTest::addColumn<QVariant>("value");
    const QVector<OddValue> values = anyValues();
    for (int i = 0; i < values.size(); ++i) {
        QTest::addRow("%d %s", i, values[i].signature) << values[i].value;
    }
}

const QStringList &serviceKeys()
{
    static const QStringList keys{QStringLiteral("AutoConnect"),
                                  QStringLiteral("Ethernet"),
                                  QStringLiteral("Favorite"),
                                  QStringLiteral("IPv4"),
                                  QStringLiteral("IPv4.Configuration"),
                                  QStringLiteral("IPv6.Configuration"),
                                  QStringLiteral("Name"),
                                  QStringLiteral("Nameservers"),
                                  QStringLiteral("Security"),
                                  QStringLiteral("State"),
                                  QStringLiteral("Strength"),
                                  QStringLiteral("Type")};
    return keys;
}

void readEverything(const ConnmanService &service)
{
    service.strength();
    service.isFavorite();
    service.getAutoConnect();
    service.security();
    service.getNameservers();
    service.name();
    service.type();
    service.interface();
    for (const char *key : {"Method", "Address", "Netmask", "Gateway", "PrefixLength"}) {
        service.getIpv4ConfigurationValue(QLatin1String(key));
        service.getIpv6ConfigurationValue(QLatin1String(key));
    }
}

} // namespace

class HostileValuesTest : public QObject
{
    Q_OBJECT

private slots:
    void serviceWithAnyValuesEverywhereIsMirrored_data();
    void serviceWithAnyValuesEverywhereIsMirrored();
    void anyValueInAPropertyChangeIsSurvived_data();
    void anyValueInAPropertyChangeIsSurvived();
    void anyValueInTheManagersPropertyChangeIsSurvived_data();
    void anyValueInTheManagersPropertyChangeIsSurvived();
    void recordsWithAnyValuesAreRegistered_data();
    void recordsWithAnyValuesAreRegistered();
};

void HostileValuesTest::serviceWithAnyValuesEverywhereIsMirrored_data()
{
    addAnyValueRows();
}

void HostileValuesTest::serviceWithAnyValuesEverywhereIsMirrored()
{
    QFETCH(QVariant, value);
    MirrorWorld world;
    world.addService(Service);
    QVariantMap properties;
    for (const QString &key : serviceKeys()) {
        properties.insert(key, value);
    }
    ConnmanManager manager(world.connection(), nullptr);
    {
        const Fault fault = world.answerGetProperties(properties);
        QVERIFY(manager.updateServices());
    }
    QCOMPARE(registeredPaths(manager), {path()});
    const auto service = manager.services().constFirst();
    QCOMPARE(service->properties().keys(), properties.keys());
    QCOMPARE(service->state(), State::Unknown);
    readEverything(*service);

    world.simulator().clearFaults();
    service->serviceChanged();
    QCOMPARE(service->state(), State::Idle);
}

void HostileValuesTest::anyValueInAPropertyChangeIsSurvived_data()
{
    addAnyValueRows();
}

void HostileValuesTest::anyValueInAPropertyChangeIsSurvived()
{
    QFETCH(QVariant, value);
    MirrorWorld world;
    world.addService(Service);
    ConnmanService service(world.connection(), QDBusObjectPath(path()), nullptr);
    service.serviceChanged();
    for (const QString &key : serviceKeys()) {
        world.emitPropertyChanged(path(), key, value);
    }
    world.emitPropertyChanged(path(), QString(), value);
    world.deliver();
    QVERIFY(service.properties().contains(QString()));
    readEverything(service);
    QCOMPARE(service.state(), State::Idle);
}

void HostileValuesTest::anyValueInTheManagersPropertyChangeIsSurvived_data()
{
    addAnyValueRows();
}

void HostileValuesTest::anyValueInTheManagersPropertyChangeIsSurvived()
{
    QFETCH(QVariant, value);
    MirrorWorld world;
    const ConnmanManager manager(world.connection(), nullptr);
    world.simulator().emitSignal(ManagerPath, ManagerInterface, QStringLiteral("PropertyChanged"),
                                 {QStringLiteral("State"), QVariant::fromValue(QDBusVariant(value))});
    world.deliver();
    QCOMPARE(world.debugLines(QStringLiteral("ConnmanManager.properties")).size(), 1);
    QCOMPARE(world.complaints(), QStringList());
}

void HostileValuesTest::recordsWithAnyValuesAreRegistered_data()
{
    addAnyValueRows();
}

void HostileValuesTest::recordsWithAnyValuesAreRegistered()
{
    QFETCH(QVariant, value);
    MirrorWorld world;
    world.addService(Service);
    const QVariantMap properties{{QStringLiteral("State"), value}, {QString(), value}};
    const QVariant records =
        QVariant::fromValue(ConnmanServiceInfoList{{QDBusObjectPath(path()), properties}});
    ConnmanManager manager(world.connection(), nullptr);
    const Fault fault = world.simulator().injectFault(ManagerInterface, QStringLiteral("GetServices"),
                                                      FaultKind::reply({records}));
    QVERIFY(manager.updateServices());
    const Fault technologies = world.simulator().injectFault(
        ManagerInterface, QStringLiteral("GetTechnologies"), FaultKind::reply({records}));
    QVERIFY(manager.hasTechnology(Service));
    world.simulator().emitSignal(ManagerPath, ManagerInterface, QStringLiteral("ServicesChanged"),
                                 {records, QVariant::fromValue(QList<QDBusObjectPath>())});
    world.deliver();
    QCOMPARE(registeredPaths(manager), {path()});
    QCOMPARE(manager.services().constFirst()->state(), State::Idle);
    QCOMPARE(world.complaints(), QStringList());
}

static const Suite<HostileValuesTest> suite;
#include "HostileValuesTest.moc"
