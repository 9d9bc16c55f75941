// Whatever types ConnMan's properties have, the mirror lives on, reports them as unusable and follows the
// next proper ones.

#include "ConnmanFixture.h"
#include "ConnmanManager.h"
#include "ManagerScene.h"
#include "OddValues.h"
#include "Suite.h"
#include "Text.h"

#include <QTest>

using namespace test_support;

namespace {

/// Values of every shape there is, right ones included: each is wrong somewhere.
QVector<OddValue> anyValues()
{
    QVector<OddValue> values = rawOddValues();
    const QVariantMap dictionary{{"Method"_s, "dhcp"_s}};
    const QVariantMap deep{{"Interface"_s, QVariantMap{{"Interface"_s, dictionary}}}};
    values.append({"s", "text"_s});
    values.append({"i", -7});
    values.append({"y", QVariant::fromValue(uchar(7))});
    values.append({"b", true});
    values.append({"d", 0.5});
    values.append({"as", QStringList{"a"_s, "b"_s}});
    values.append({"ay", QByteArray("\0\xff", 2)});
    values.append({"a{sv}", dictionary});
    values.append({"empty a{sv}", QVariantMap()});
    values.append({"deep a{sv}", deep});
    values.append({"v", QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(7))))});
    values.append({"o", QVariant::fromValue(QDBusObjectPath("/x"_s))});
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
    static const QStringList keys{"AutoConnect"_s, "Ethernet"_s,           "Favorite"_s,
                                  "IPv4"_s,        "IPv4.Configuration"_s, "IPv6.Configuration"_s,
                                  "Name"_s,        "Nameservers"_s,        "Security"_s,
                                  "State"_s,       "Strength"_s,           "Type"_s};
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

class HostileValuesTest : public ConnmanFixture
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
    addService(A);
    QVariantMap properties;
    for (const QString &key : serviceKeys()) {
        properties.insert(key, value);
    }
    ConnmanManager manager(connection(), nullptr);
    {
        const Fault fault = answerGetProperties(properties);
        QVERIFY(manager.updateServices());
    }
    QCOMPARE(registeredPaths(manager), {pathOf(A)});
    const auto service = manager.services().constFirst();
    QCOMPARE(service->properties().keys(), properties.keys());
    QCOMPARE(service->state(), State::Unknown);
    readEverything(*service);

    connman().clearFaults();
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
    addService(A);
    ConnmanService service(connection(), QDBusObjectPath(pathOf(A)), nullptr);
    service.serviceChanged();
    for (const QString &key : serviceKeys()) {
        emitPropertyChanged(pathOf(A), key, value);
    }
    emitPropertyChanged(pathOf(A), QString(), value);
    deliver();
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
    const ConnmanManager manager(connection(), nullptr);
    connman().emitSignal(ManagerPath, ManagerInterface, "PropertyChanged"_s,
                         {"State"_s, QVariant::fromValue(QDBusVariant(value))});
    deliver();
    QCOMPARE(debugLines("ConnmanManager.properties"_s).size(), 1);
    QCOMPARE(complaints(), QStringList());
}

void HostileValuesTest::recordsWithAnyValuesAreRegistered_data()
{
    addAnyValueRows();
}

void HostileValuesTest::recordsWithAnyValuesAreRegistered()
{
    QFETCH(QVariant, value);
    addService(A);
    const QVariantMap properties{{"State"_s, value}, {QString(), value}};
    const QVariant records =
        QVariant::fromValue(ConnmanServiceInfoList{{QDBusObjectPath(pathOf(A)), properties}});
    ConnmanManager manager(connection(), nullptr);
    const Fault fault = connman().injectFault(ManagerInterface, "GetServices"_s, FaultKind::reply({records}));
    QVERIFY(manager.updateServices());
    const Fault technologies =
        connman().injectFault(ManagerInterface, "GetTechnologies"_s, FaultKind::reply({records}));
    QVERIFY(manager.hasTechnology(A));
    connman().emitSignal(ManagerPath, ManagerInterface, "ServicesChanged"_s,
                         {records, QVariant::fromValue(QList<QDBusObjectPath>())});
    deliver();
    QCOMPARE(registeredPaths(manager), {pathOf(A)});
    QCOMPARE(manager.services().constFirst()->state(), State::Idle);
    QCOMPARE(complaints(), QStringList());
}

static const Suite<HostileValuesTest> hostileValuesTest;
#include "HostileValuesTest.moc"
