// The property cache of ConnmanService: how it is filled, replaced and patched.

#include "ConnmanService.h"
#include "MirrorWorld.h"
#include "Suite.h"

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
    const ConnmanService service(world.connection(), QDBusObjectPath(QStringLiteral("/x")), nullptr);
    QCOMPARE(world.debugLines(QStringLiteral("ConnmanService")),
             {QStringLiteral("ConnmanService( \"net.connman\" , \"/x\" , \"net.connman.Service\"")});
}

void ConnmanServiceCacheTest::constructionLogsBeforeItSubscribes()
{
    MirrorWorld world;
    const ConnmanService service(MirrorWorld::noConnection(), QDBusObjectPath(QStringLiteral("/x")), nullptr);
    const auto messages = world.log().messages();
    QCOMPARE(messages.size(), 2);
    QCOMPARE(messages.constFirst().type, QtDebugMsg);
    QCOMPARE(messages.constLast().type, QtCriticalMsg);
}

void ConnmanServiceCacheTest::signalAndSlotsHaveTheirOrder()
{
    const QStringList expected{QStringLiteral("stateChanged(ConnmanService::State)"),
                               QStringLiteral("propertyChanged(QString,QDBusVariant)"),
                               QStringLiteral("serviceChanged()")};
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
    ConnmanService service(MirrorWorld::noConnection(), QDBusObjectPath(QStringLiteral("/x")), nullptr);
    QCOMPARE(world.complaints(),
             {critical(QStringLiteral("ConnmanService"),
                       QStringLiteral("Unable to connect PropertyChanged signal for service \"/x\""))});
    world.log().clear();
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(world.complaints(),
             {critical(PropertiesLog,
                       QStringLiteral("Call to GetProperties failed: \"Not connected to D-Bus server\""))});
}

void ConnmanServiceCacheTest::updateReadsAllProperties()
{
    MirrorWorld world;
    const QDBusObjectPath path = world.addService(Identifier, {{Name, QStringLiteral("Home")}});
    ConnmanService service(world.connection(), path, nullptr);
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(service.properties().keys(), world.simulator().serviceProperties(Identifier).keys());
    QCOMPARE(service.properties().value(Name), QVariant(QStringLiteral("Home")));
    QCOMPARE(world.simulator().calls(), {MirrorWorld::getPropertiesCall(path.path())});
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanServiceCacheTest::updateMakesDictionariesMaps()
{
    MirrorWorld world;
    const QVariantMap ipv4{{QStringLiteral("Method"), QStringLiteral("dhcp")},
                           {QStringLiteral("Address"), QStringLiteral("10.0.0.2")}};
    const QDBusObjectPath path = world.addService(Identifier, {{QStringLiteral("IPv4"), ipv4}});
    ConnmanService service(world.connection(), path, nullptr);
    service.dbusUpdateProperties();
    QCOMPARE(service.properties().value(QStringLiteral("IPv4")).userType(), int(QMetaType::QVariantMap));
    QCOMPARE(service.properties().value(QStringLiteral("IPv4")).toMap(), ipv4);
}

void ConnmanServiceCacheTest::updateDropsPropertiesThatAreNoLongerReported()
{
    MirrorWorld world;
    const QDBusObjectPath path = world.addService(Identifier, {{QStringLiteral("Extra"), true}});
    ConnmanService service(world.connection(), path, nullptr);
    service.dbusUpdateProperties();
    QVERIFY(service.properties().contains(QStringLiteral("Extra")));
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
    const Fault fault = world.failGetProperties(QStringLiteral("org.freedesktop.DBus.Error.UnknownObject"),
                                                QStringLiteral("It is gone"));
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(service.properties(), before);
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanServiceCacheTest::updateAnsweredWithAnErrorIsOneLineAndKeepsTheCache_data()
{
    QTest::addColumn<QString>("errorName");
    QTest::newRow("ConnMan's own") << QStringLiteral("net.connman.Error.Failed");
    QTest::newRow("access denied") << QStringLiteral("org.freedesktop.DBus.Error.AccessDenied");
    QTest::newRow("unknown method") << QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod");
    QTest::newRow("unknown interface") << QStringLiteral("org.freedesktop.DBus.Error.UnknownInterface");
    QTest::newRow("service unknown") << QStringLiteral("org.freedesktop.DBus.Error.ServiceUnknown");
    QTest::newRow("no reply") << QStringLiteral("org.freedesktop.DBus.Error.NoReply");
    QTest::newRow("limits exceeded") << QStringLiteral("org.freedesktop.DBus.Error.LimitsExceeded");
}

void ConnmanServiceCacheTest::updateAnsweredWithAnErrorIsOneLineAndKeepsTheCache()
{
    QFETCH(QString, errorName);
    MirrorWorld world;
    ConnmanService service(world.connection(), world.addService(Identifier), nullptr);
    service.dbusUpdateProperties();
    const QVariantMap before = service.properties();
    const Fault fault = world.failGetProperties(errorName, QStringLiteral("Not today"));
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(service.properties(), before);
    QCOMPARE(world.complaints(),
             {critical(PropertiesLog, QStringLiteral("Call to GetProperties failed: \"Not today\""))});
}

void ConnmanServiceCacheTest::updateWhileConnmanVanishesIsOneLineAndKeepsTheCache()
{
    MirrorWorld world;
    ConnmanService service(world.connection(), world.addService(Identifier), nullptr);
    service.dbusUpdateProperties();
    const QVariantMap before = service.properties();
    const Fault fault = world.simulator().injectFault(QStringLiteral("net.connman.Service"),
                                                      QStringLiteral("GetProperties"), FaultKind::vanish());
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(service.properties(), before);
    QCOMPARE(world.complaints().size(), 1);
    QVERIFY(world.complaints().constFirst().startsWith(
        critical(PropertiesLog, QStringLiteral("Call to GetProperties failed: "))));
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
    world.emitPropertyChanged(path.path(), QStringLiteral("Novelty"), 5);
    world.deliver();
    const QVariantMap expected{{QStringLiteral("Novelty"), 5}};
    QCOMPARE(service.properties(), expected);
}

void ConnmanServiceCacheTest::changedDictionaryIsStoredAsAMap()
{
    MirrorWorld world;
    const QDBusObjectPath path = world.addService(Identifier);
    ConnmanService service(world.connection(), path, nullptr);
    const QVariantMap ipv4{{QStringLiteral("Method"), QStringLiteral("auto")}};
    world.emitPropertyChanged(path.path(), QStringLiteral("IPv4"), ipv4);
    world.deliver();
    QCOMPARE(service.properties().value(QStringLiteral("IPv4")), QVariant(ipv4));
    QCOMPARE(service.getIpv4Configuration(), ipv4);
}

void ConnmanServiceCacheTest::changedPropertyLogsOneDebugLine()
{
    MirrorWorld world;
    ConnmanService service(world.connection(), QDBusObjectPath(QStringLiteral("/x")), nullptr);
    service.propertyChanged(Strength, QDBusVariant(byte(17)));
    service.propertyChanged(Name, QDBusVariant(QStringLiteral("Home")));
    const QStringList expected{QStringLiteral("propertyChanged( \"Strength\" ,  QVariant(uchar, 17) )"),
                               QStringLiteral("propertyChanged( \"Name\" ,  QVariant(QString, \"Home\") )")};
    QCOMPARE(world.debugLines(PropertiesLog), expected);
}

void ConnmanServiceCacheTest::propertyChangesOfOtherServicesAreNotHeard()
{
    MirrorWorld world;
    ConnmanService service(world.connection(), world.addService(Identifier), nullptr);
    world.emitPropertyChanged(MirrorWorld::pathOf(QStringLiteral("wifi_other")), Name,
                              QStringLiteral("Else"));
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
    service.getIpv4ConfigurationValue(QStringLiteral("Address"));
    service.getIpv6Configuration();
    service.getIpv6ConfigurationValue(QStringLiteral("Address"));
    service.state();
    QCOMPARE(world.simulator().calls(), QStringList());
}

void ConnmanServiceCacheTest::updatedIpv6ConfigurationIsReadFromConnman()
{
    MirrorWorld world;
    const QDBusObjectPath path = world.addService(Identifier);
    ConnmanService service(world.connection(), path, nullptr);
    const QVariantMap ipv6{{QStringLiteral("Method"), QStringLiteral("auto")},
                           {QStringLiteral("PrefixLength"), byte(64)}};
    world.simulator().setServiceProperty(Identifier, QStringLiteral("IPv6.Configuration"), ipv6, true);
    const QVariantMap expected{{QStringLiteral("Method"), QStringLiteral("auto")},
                               {QStringLiteral("PrefixLength"), 64}};
    QCOMPARE(service.getUpdatedIpv6Configuration(), expected);
    QCOMPARE(world.simulator().calls(), {MirrorWorld::getPropertiesCall(path.path())});
}

static const Suite<ConnmanServiceCacheTest> suite;
#include "ConnmanServiceCacheTest.moc"
