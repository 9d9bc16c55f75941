// The property cache of ConnmanService: how it is filled, replaced and patched.

#include "ConnmanFixture.h"
#include "ConnmanService.h"
#include "MirrorNames.h"
#include "OwnMethods.h"
#include "Suite.h"
#include "Text.h"

#include <QSignalSpy>
#include <QTest>

using namespace test_support;

namespace {

const QLatin1String Name("Name");
const QLatin1String Strength("Strength");
const QLatin1String Idle("idle");

QVariant byte(uchar value)
{
    return QVariant::fromValue(value);
}

} // namespace

class ConnmanServiceCacheTest : public ConnmanFixture
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
    void updateAnsweredWithAnErrorKeepsTheCache_data();
    void updateAnsweredWithAnErrorKeepsTheCache();
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
    const QDBusObjectPath path = addService(Identifier);
    const ConnmanService service(connection(), path, nullptr);
    deliver();
    QCOMPARE(calls(), QStringList());
    QCOMPARE(service.path(), path.path());
    QVERIFY(service.properties().isEmpty());
    QCOMPARE(service.state(), ConnmanService::State::Unknown);
    QCOMPARE(service.previousState(), ConnmanService::State::Unknown);
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceCacheTest::constructionLogsOneDebugLine()
{
    const ConnmanService service(connection(), QDBusObjectPath("/x"_s), nullptr);
    QCOMPARE(debugLines("ConnmanService"_s),
             {"ConnmanService( \"net.connman\" , \"/x\" , \"net.connman.Service\""_s});
}

void ConnmanServiceCacheTest::constructionLogsBeforeItSubscribes()
{
    const ConnmanService service(noConnection(), QDBusObjectPath("/x"_s), nullptr);
    const auto messages = log().messages();
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
    const ConnmanService service(connection(), addService(Identifier), nullptr);
    QCOMPARE(service.identifier(), Identifier);
}

void ConnmanServiceCacheTest::failedSubscriptionIsOneLineAndTheServiceIsUsable()
{
    ConnmanService service(noConnection(), QDBusObjectPath("/x"_s), nullptr);
    QCOMPARE(complaints(),
             {critical("ConnmanService"_s, "Unable to connect PropertyChanged signal for service \"/x\""_s)});
    log().clear();
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(complaints(),
             {critical(PropertiesLog, "Call to GetProperties failed: \"Not connected to D-Bus server\""_s)});
}

void ConnmanServiceCacheTest::updateReadsAllProperties()
{
    const QDBusObjectPath path = addService(Identifier, {{Name, "Home"_s}});
    ConnmanService service(connection(), path, nullptr);
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(service.properties().keys(), connman().serviceProperties(Identifier).keys());
    QCOMPARE(service.properties().value(Name), QVariant("Home"_s));
    QCOMPARE(calls(), {getPropertiesCall(path.path())});
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceCacheTest::updateMakesDictionariesMaps()
{
    const QVariantMap ipv4{{"Method"_s, "dhcp"_s}, {"Address"_s, "10.0.0.2"_s}};
    const QDBusObjectPath path = addService(Identifier, {{"IPv4"_s, ipv4}});
    ConnmanService service(connection(), path, nullptr);
    service.dbusUpdateProperties();
    QCOMPARE(service.properties().value("IPv4"_s).userType(), int(QMetaType::QVariantMap));
    QCOMPARE(service.properties().value("IPv4"_s).toMap(), ipv4);
}

void ConnmanServiceCacheTest::updateDropsPropertiesThatAreNoLongerReported()
{
    const QDBusObjectPath path = addService(Identifier, {{"Extra"_s, true}});
    ConnmanService service(connection(), path, nullptr);
    service.dbusUpdateProperties();
    QVERIFY(service.properties().contains("Extra"_s));
    const Fault fault = answerGetProperties({{StateKey, Idle}});
    service.dbusUpdateProperties();
    const QVariantMap expected{{StateKey, Idle}};
    QCOMPARE(service.properties(), expected);
}

void ConnmanServiceCacheTest::updateOfAVanishedServiceIsSilentAndKeepsTheCache()
{
    ConnmanService service(connection(), addService(Identifier), nullptr);
    service.dbusUpdateProperties();
    const QVariantMap before = service.properties();
    connman().removeService(Identifier);
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(service.properties(), before);
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceCacheTest::updateAnsweredWithAnErrorKeepsTheCache_data()
{
    QTest::addColumn<QString>("errorName");
    QTest::addColumn<QStringList>("lines");
    const QStringList line{critical(PropertiesLog, "Call to GetProperties failed: \"Not today\""_s)};
    QTest::newRow("ConnMan's own") << "net.connman.Error.Failed"_s << line;
    QTest::newRow("access denied") << "org.freedesktop.DBus.Error.AccessDenied"_s << line;
    QTest::newRow("unknown method") << "org.freedesktop.DBus.Error.UnknownMethod"_s << line;
    QTest::newRow("unknown interface") << "org.freedesktop.DBus.Error.UnknownInterface"_s << line;
    QTest::newRow("service unknown") << "org.freedesktop.DBus.Error.ServiceUnknown"_s << line;
    QTest::newRow("no reply") << "org.freedesktop.DBus.Error.NoReply"_s << line;
    QTest::newRow("limits exceeded") << "org.freedesktop.DBus.Error.LimitsExceeded"_s << line;
    QTest::newRow("unknown object") << "org.freedesktop.DBus.Error.UnknownObject"_s << QStringList();
}

void ConnmanServiceCacheTest::updateAnsweredWithAnErrorKeepsTheCache()
{
    QFETCH(QString, errorName);
    ConnmanService service(connection(), addService(Identifier), nullptr);
    service.dbusUpdateProperties();
    const QVariantMap before = service.properties();
    const Fault fault = failGetProperties(errorName, "Not today"_s);
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(service.properties(), before);
    QTEST(complaints(), "lines");
}

void ConnmanServiceCacheTest::updateWhileConnmanVanishesIsOneLineAndKeepsTheCache()
{
    ConnmanService service(connection(), addService(Identifier), nullptr);
    service.dbusUpdateProperties();
    const QVariantMap before = service.properties();
    const Fault fault =
        connman().injectFault("net.connman.Service"_s, "GetProperties"_s, FaultKind::vanish());
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(service.properties(), before);
    QCOMPARE(complaints().size(), 1);
    QVERIFY(
        complaints().constFirst().startsWith(critical(PropertiesLog, "Call to GetProperties failed: "_s)));
}

void ConnmanServiceCacheTest::updateAnsweredWithNothingEmptiesTheCache()
{
    ConnmanService service(connection(), addService(Identifier), nullptr);
    service.dbusUpdateProperties();
    const Fault fault = answerGetProperties({});
    QVERIFY(service.dbusUpdateProperties());
    QVERIFY(service.properties().isEmpty());
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceCacheTest::changedStrengthIsStoredWithoutACallOrASignal()
{
    ConnmanService service(connection(), addService(Identifier), nullptr);
    service.serviceChanged();
    connman().clearCalls();
    const QSignalSpy changes(&service, &ConnmanService::stateChanged);

    connman().setServiceProperty(Identifier, Strength, byte(17));
    deliver();
    QCOMPARE(service.strength(), 17);
    QCOMPARE(changes.count(), 0);
    QCOMPARE(calls(), QStringList());
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceCacheTest::newPropertyIsStored()
{
    const QDBusObjectPath path = addService(Identifier);
    ConnmanService service(connection(), path, nullptr);
    emitPropertyChanged(path.path(), "Novelty"_s, 5);
    deliver();
    const QVariantMap expected{{"Novelty"_s, 5}};
    QCOMPARE(service.properties(), expected);
}

void ConnmanServiceCacheTest::changedDictionaryIsStoredAsAMap()
{
    const QDBusObjectPath path = addService(Identifier);
    ConnmanService service(connection(), path, nullptr);
    const QVariantMap ipv4{{"Method"_s, "auto"_s}};
    emitPropertyChanged(path.path(), "IPv4"_s, ipv4);
    deliver();
    QCOMPARE(service.properties().value("IPv4"_s), QVariant(ipv4));
    QCOMPARE(service.getIpv4Configuration(), ipv4);
}

void ConnmanServiceCacheTest::changedPropertyLogsOneDebugLine()
{
    ConnmanService service(connection(), QDBusObjectPath("/x"_s), nullptr);
    service.propertyChanged(Strength, QDBusVariant(byte(17)));
    service.propertyChanged(Name, QDBusVariant("Home"_s));
    const QStringList expected{"propertyChanged( \"Strength\" ,  QVariant(uchar, 17) )"_s,
                               "propertyChanged( \"Name\" ,  QVariant(QString, \"Home\") )"_s};
    QCOMPARE(debugLines(PropertiesLog), expected);
}

void ConnmanServiceCacheTest::propertyChangesOfOtherServicesAreNotHeard()
{
    ConnmanService service(connection(), addService(Identifier), nullptr);
    emitPropertyChanged(pathOf("wifi_other"_s), Name, "Else"_s);
    deliver();
    QVERIFY(service.properties().isEmpty());
}

void ConnmanServiceCacheTest::gettersCallNothing()
{
    ConnmanService service(connection(), addService(Identifier), nullptr);
    service.serviceChanged();
    connman().clearCalls();
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
    QCOMPARE(calls(), QStringList());
}

void ConnmanServiceCacheTest::updatedIpv6ConfigurationIsReadFromConnman()
{
    const QDBusObjectPath path = addService(Identifier);
    ConnmanService service(connection(), path, nullptr);
    const QVariantMap ipv6{{"Method"_s, "auto"_s}, {"PrefixLength"_s, byte(64)}};
    connman().setServiceProperty(Identifier, "IPv6.Configuration"_s, ipv6, true);
    const QVariantMap expected{{"Method"_s, "auto"_s}, {"PrefixLength"_s, 64}};
    QCOMPARE(service.getUpdatedIpv6Configuration(), expected);
    QCOMPARE(calls(), {getPropertiesCall(path.path())});
}

static const Suite<ConnmanServiceCacheTest> connmanServiceCacheTest;
#include "ConnmanServiceCacheTest.moc"
