// The property cache of ConnmanService: how it is filled, replaced and patched.

#include "ConnmanService.h"
#include "MirrorWorld.h"
#include "Suite.h"
#include "Text.h"

#include <QSignalSpy>
#include <QTest>

using test_support::Fault;
using test_support::FaultKind;

namespace {

const QLatin1String Identifier("wifi_020000000000_686f6d65_managed_psk");
const QLatin1String PropertiesLog("ConnmanService.properties");
const QLatin1String Name("Name");
const QLatin1String State("State");
const QLatin1String Strength("Strength");
const QLatin1String Idle("idle");

QVariant byte(uchar value)
{
    return QVariant::fromValue(value);
}

} // namespace

class ConnmanServiceCacheTest : public QObject
{
    Q_OBJECT

private slots:
    void constructionReadsNothingAndKnowsNothing();
    void constructionLogsOneDebugLine();
    void constructionLogsBeforeItSubscribes();
    void signalAndSlotsHaveTheirOrder();
    void identifierIsTheLastElementOfThePath();
    void failedSubscriptionIsOneLineAndTheServiceIsUsable();

    void updateReadsAllProperties();
    void updateMakesDictionariesMaps();
    void updateDropsPropertiesThatAreNoLongerReported();
    void updateOfAVanishedServiceIsSilentAndKeepsTheCache();
    void updateAnsweredWithUnknownObjectIsSilentAndKeepsTheCache();
    void updateAnsweredWithAnErrorIsOneLineAndKeepsTheCache_data();
    void updateAnsweredWithAnErrorIsOneLineAndKeepsTheCache();
    void updateWhileConnmanVanishesIsOneLineAndKeepsTheCache();
    void updateAnsweredWithNothingEmptiesTheCache();

    void changedStrengthIsStoredWithoutACallOrASignal();
    void newPropertyIsStored();
    void changedDictionaryIsStoredAsAMap();
    void changedPropertyLogsOneDebugLine();
    void propertyChangesOfOtherServicesAreNotHeard();

    void gettersCallNothing();
    void updatedIpv6ConfigurationIsReadFromConnman();
};

void ConnmanServiceCacheTest::constructionReadsNothingAndKnowsNothing()
{
    MirrorWorld world;
    const QDBusObjectPath path = world.addService(Identifier);
    const ConnmanService service(world.connection(), path, nullptr);
    world.deliver();
    QCOMPARE(world.simulator().calls(), QStringList());
    QCOMPARE(service.path(), path.path());
    QVERIFY(service.properties().isEmpty());
    QCOMPARE(service.state(), ConnmanService::State::Unknown);
    QCOMPARE(service.previousState(), ConnmanService::State::Unknown);
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanServiceCacheTest::constructionLogsOneDebugLine()
{
    MirrorWorld world;
    const ConnmanService service(world.connection(), QDBusObjectPath("/x"_s), nullptr);
    QCOMPARE(world.debugLines("ConnmanService"_s),
             {"ConnmanService( \"net.connman\" , \"/x\" , \"net.connman.Service\""_s});
}

void ConnmanServiceCacheTest::constructionLogsBeforeItSubscribes()
{
    MirrorWorld world;
    const ConnmanService service(MirrorWorld::noConnection(), QDBusObjectPath("/x"_s), nullptr);
    const auto messages = world.log().messages();
    QCOMPARE(messages.size(), 2);
    QCOMPARE(messages.constFirst().type, QtDebugMsg);
    QCOMPARE(messages.constLast().type, QtCriticalMsg);
}

void ConnmanServiceCacheTest::signalAndSlotsHaveTheirOrder()
{
    const QStringList expected{"stateChanged(ConnmanService::State)"_s,
                               "propertyChanged(QString,QDBusVariant)"_s, "serviceChanged()"_s};
    QCOMPARE(ownMethods(ConnmanService::staticMetaObject), expected);
}

void ConnmanServiceCacheTest::identifierIsTheLastElementOfThePath()
{
    MirrorWorld world;
    const ConnmanService service(world.connection(), world.addService(Identifier), nullptr);
    QCOMPARE(service.identifier(), Identifier);
}

void ConnmanServiceCacheTest::failedSubscriptionIsOneLineAndTheServiceIsUsable()
{
    MirrorWorld world;
    ConnmanService service(MirrorWorld::noConnection(), QDBusObjectPath("/x"_s), nullptr);
    QCOMPARE(world.complaints(),
             {critical("ConnmanService"_s, "Unable to connect PropertyChanged signal for service \"/x\""_s)});
    world.log().clear();
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(world.complaints(),
             {critical(PropertiesLog, "Call to GetProperties failed: \"Not connected to D-Bus server\""_s)});
}

void ConnmanServiceCacheTest::updateReadsAllProperties()
{
    MirrorWorld world;
    const QDBusObjectPath path = world.addService(Identifier, {{Name, "Home"_s}});
    ConnmanService service(world.connection(), path, nullptr);
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(service.properties().keys(), world.simulator().serviceProperties(Identifier).keys());
    QCOMPARE(service.properties().value(Name), QVariant("Home"_s));
    QCOMPARE(world.simulator().calls(), {MirrorWorld::getPropertiesCall(path.path())});
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanServiceCacheTest::updateMakesDictionariesMaps()
{
    MirrorWorld world;
    const QVariantMap ipv4{{"Method"_s, "dhcp"_s}, {"Address"_s, "10.0.0.2"_s}};
    const QDBusObjectPath path = world.addService(Identifier, {{"IPv4"_s, ipv4}});
    ConnmanService service(world.connection(), path, nullptr);
    service.dbusUpdateProperties();
    QCOMPARE(service.properties().value("IPv4"_s).userType(), int(QMetaType::QVariantMap));
    QCOMPARE(service.properties().value("IPv4"_s).toMap(), ipv4);
}

void ConnmanServiceCacheTest::updateDropsPropertiesThatAreNoLongerReported()
{
    MirrorWorld world;
    const QDBusObjectPath path = world.addService(Identifier, {{"Extra"_s, true}});
    ConnmanService service(world.connection(), path, nullptr);
    service.dbusUpdateProperties();
    QVERIFY(service.properties().contains("Extra"_s));
    const Fault fault = world.answerGetProperties({{State, Idle}});
    service.dbusUpdateProperties();
    const QVariantMap expected{{State, Idle}};
    QCOMPARE(service.properties(), expected);
}

void ConnmanServiceCacheTest::updateOfAVanishedServiceIsSilentAndKeepsTheCache()
{
    MirrorWorld world;
    ConnmanService service(world.connection(), world.addService(Identifier), nullptr);
    service.dbusUpdateProperties();
    const QVariantMap before = service.properties();
    world.simulator().removeService(Identifier);
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(service.properties(), before);
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanServiceCacheTest::updateAnsweredWithUnknownObjectIsSilentAndKeepsTheCache()
{
    MirrorWorld world;
    ConnmanService service(world.connection(), world.addService(Identifier), nullptr);
    service.dbusUpdateProperties();
    const QVariantMap before = service.properties();
    const Fault fault = world.failGetProperties("org.freedesktop.DBus.Error.UnknownObject"_s, "It is gone"_s);
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(service.properties(), before);
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanServiceCacheTest::updateAnsweredWithAnErrorIsOneLineAndKeepsTheCache_data()
{
    QTest::addColumn<QString>("errorName");
    QTest::newRow("ConnMan's own") << "net.connman.Error.Failed"_s;
    QTest::newRow("access denied") << "org.freedesktop.DBus.Error.AccessDenied"_s;
    QTest::newRow("unknown method") << "org.freedesktop.DBus.Error.UnknownMethod"_s;
    QTest::newRow("unknown interface") << "org.freedesktop.DBus.Error.UnknownInterface"_s;
    QTest::newRow("service unknown") << "org.freedesktop.DBus.Error.ServiceUnknown"_s;
    QTest::newRow("no reply") << "org.freedesktop.DBus.Error.NoReply"_s;
    QTest::newRow("limits exceeded") << "org.freedesktop.DBus.Error.LimitsExceeded"_s;
}

void ConnmanServiceCacheTest::updateAnsweredWithAnErrorIsOneLineAndKeepsTheCache()
{
    QFETCH(QString, errorName);
    MirrorWorld world;
    ConnmanService service(world.connection(), world.addService(Identifier), nullptr);
    service.dbusUpdateProperties();
    const QVariantMap before = service.properties();
    const Fault fault = world.failGetProperties(errorName, "Not today"_s);
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(service.properties(), before);
    QCOMPARE(world.complaints(), {critical(PropertiesLog, "Call to GetProperties failed: \"Not today\""_s)});
}

void ConnmanServiceCacheTest::updateWhileConnmanVanishesIsOneLineAndKeepsTheCache()
{
    MirrorWorld world;
    ConnmanService service(world.connection(), world.addService(Identifier), nullptr);
    service.dbusUpdateProperties();
    const QVariantMap before = service.properties();
    const Fault fault =
        world.simulator().injectFault("net.connman.Service"_s, "GetProperties"_s, FaultKind::vanish());
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(service.properties(), before);
    QCOMPARE(world.complaints().size(), 1);
    QVERIFY(world.complaints().constFirst().startsWith(
        critical(PropertiesLog, "Call to GetProperties failed: "_s)));
}

void ConnmanServiceCacheTest::updateAnsweredWithNothingEmptiesTheCache()
{
    MirrorWorld world;
    ConnmanService service(world.connection(), world.addService(Identifier), nullptr);
    service.dbusUpdateProperties();
    const Fault fault = world.answerGetProperties({});
    QVERIFY(service.dbusUpdateProperties());
    QVERIFY(service.properties().isEmpty());
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanServiceCacheTest::changedStrengthIsStoredWithoutACallOrASignal()
{
    MirrorWorld world;
    ConnmanService service(world.connection(), world.addService(Identifier), nullptr);
    service.serviceChanged();
    world.simulator().clearCalls();
    const QSignalSpy changes(&service, &ConnmanService::stateChanged);

    world.simulator().setServiceProperty(Identifier, Strength, byte(17));
    world.deliver();
    QCOMPARE(service.strength(), 17);
    QCOMPARE(changes.count(), 0);
    QCOMPARE(world.simulator().calls(), QStringList());
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanServiceCacheTest::newPropertyIsStored()
{
    MirrorWorld world;
    const QDBusObjectPath path = world.addService(Identifier);
    ConnmanService service(world.connection(), path, nullptr);
    world.emitPropertyChanged(path.path(), "Novelty"_s, 5);
    world.deliver();
    const QVariantMap expected{{"Novelty"_s, 5}};
    QCOMPARE(service.properties(), expected);
}

void ConnmanServiceCacheTest::changedDictionaryIsStoredAsAMap()
{
    MirrorWorld world;
    const QDBusObjectPath path = world.addService(Identifier);
    ConnmanService service(world.connection(), path, nullptr);
    const QVariantMap ipv4{{"Method"_s, "auto"_s}};
    world.emitPropertyChanged(path.path(), "IPv4"_s, ipv4);
    world.deliver();
    QCOMPARE(service.properties().value("IPv4"_s), QVariant(ipv4));
    QCOMPARE(service.getIpv4Configuration(), ipv4);
}

void ConnmanServiceCacheTest::changedPropertyLogsOneDebugLine()
{
    MirrorWorld world;
    ConnmanService service(world.connection(), QDBusObjectPath("/x"_s), nullptr);
    service.propertyChanged(Strength, QDBusVariant(byte(17)));
    service.propertyChanged(Name, QDBusVariant("Home"_s));
    const QStringList expected{"propertyChanged( \"Strength\" ,  QVariant(uchar, 17) )"_s,
                               "propertyChanged( \"Name\" ,  QVariant(QString, \"Home\") )"_s};
    QCOMPARE(world.debugLines(PropertiesLog), expected);
}

void ConnmanServiceCacheTest::propertyChangesOfOtherServicesAreNotHeard()
{
    MirrorWorld world;
    ConnmanService service(world.connection(), world.addService(Identifier), nullptr);
    world.emitPropertyChanged(MirrorWorld::pathOf("wifi_other"_s), Name, "Else"_s);
    world.deliver();
    QVERIFY(service.properties().isEmpty());
}

void ConnmanServiceCacheTest::gettersCallNothing()
{
    MirrorWorld world;
    ConnmanService service(world.connection(), world.addService(Identifier), nullptr);
    service.serviceChanged();
    world.simulator().clearCalls();
    service.strength();
    service.isFavorite();
    service.getAutoConnect();
    service.security();
    service.getNameservers();
    service.name();
    service.type();
    service.interface();
    service.getIpv4Configuration();
    service.getIpv4ConfigurationValue("Address"_s);
    service.getIpv6Configuration();
    service.getIpv6ConfigurationValue("Address"_s);
    service.state();
    QCOMPARE(world.simulator().calls(), QStringList());
}

void ConnmanServiceCacheTest::updatedIpv6ConfigurationIsReadFromConnman()
{
    MirrorWorld world;
    const QDBusObjectPath path = world.addService(Identifier);
    ConnmanService service(world.connection(), path, nullptr);
    const QVariantMap ipv6{{"Method"_s, "auto"_s}, {"PrefixLength"_s, byte(64)}};
    world.simulator().setServiceProperty(Identifier, "IPv6.Configuration"_s, ipv6, true);
    const QVariantMap expected{{"Method"_s, "auto"_s}, {"PrefixLength"_s, 64}};
    QCOMPARE(service.getUpdatedIpv6Configuration(), expected);
    QCOMPARE(world.simulator().calls(), {MirrorWorld::getPropertiesCall(path.path())});
}

static const Suite<ConnmanServiceCacheTest> suite;
#include "ConnmanServiceCacheTest.moc"
