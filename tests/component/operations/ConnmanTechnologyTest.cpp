#include "EventWait.h"
#include "Suite.h"
#include "TechnologyFixture.h"
#include "Text.h"

#include <functional>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QMap>
#include <QTest>

using test_support::eventTimeoutMs;
using test_support::Fault;
using test_support::FaultKind;
using Getter = std::function<QVariant(ConnmanTechnology &)>;

Q_DECLARE_METATYPE(Getter)

/// What the proxy knows of the technology.
class ConnmanTechnologyTest : public TechnologyFixture
{
    Q_OBJECT

private slots:
    void constructionReadsThePropertiesOnce();
    void constructionWithoutConnmanIsLogged();
    void unusableBusIsLoggedAndEverythingFails();

    void gettersReadTheCache();
    void missingPropertyIsLogged_data();
    void missingPropertyIsLogged();
    void propertyOfAWrongTypeIsLogged_data();
    void propertyOfAWrongTypeIsLogged();

    void powerIsReadAnew_data();
    void powerIsReadAnew();
    void missingPowerIsUnknownWithOneLine();
    void refreshReplacesTheWholeCache();

    void refreshOfARemovedTechnologyIsFalse();
    void powerOfARemovedTechnologyIsTheLastKnown();
    void failedRefreshIsTrueAndKeepsTheCache_data();
    void failedRefreshIsTrueAndKeepsTheCache();

    void changeOfConnectedReachesTheCacheWithoutAnotherCall();
    void changedPropertyIsLogged();
    void changedDictionaryIsReadBeforeItIsLogged();
    void everyValueOfARefreshIsMadePlain();
    void otherTechnologiesChangesAreIgnored();
};

void ConnmanTechnologyTest::constructionReadsThePropertiesOnce()
{
    makeProxy();
    QCOMPARE(calls(), QStringList(call("GetProperties")));
    QVERIFY(technology().isConnected());
    QCOMPARE(criticalLines(), QStringList());
}

void ConnmanTechnologyTest::constructionWithoutConnmanIsLogged()
{
    connman().setPresent("net.connman"_s, false);
    makeProxy();
    QCOMPARE(criticalLines(), QStringList("Call to GetProperties failed: \"The name net.connman was "
                                          "not provided by any .service files\""_s));
    QCOMPARE(technology().name(), QString());
}

void ConnmanTechnologyTest::unusableBusIsLoggedAndEverythingFails()
{
    ConnmanTechnology unreachable(noConnection(), name(), nullptr);
    const QString notConnected = "\"Not connected to D-Bus server\""_s;

    QCOMPARE(criticalLines(),
             QStringList({"Unable to connect PropertyChanged signal for service \"%1\""_s.arg(path()),
                          "Call to GetProperties failed: "_s + notConnected}));
    QCOMPARE(unreachable.isPowered(), -1);
    QVERIFY(!unreachable.setPowered(true));
    QVERIFY(!unreachable.scan());
}

void ConnmanTechnologyTest::gettersReadTheCache()
{
    QCOMPARE(technology().name(), "WiFi"_s);
    QCOMPARE(technology().type(), name());
    QVERIFY(technology().isConnected());
    QVERIFY(technology().isTethering());
    QCOMPARE(calls(), QStringList());
    QCOMPARE(criticalLines(), QStringList());
}

void ConnmanTechnologyTest::missingPropertyIsLogged_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QVariant>("fallback");

    QTest::newRow("name") << "Name"_s << Getter([](ConnmanTechnology &each) { return each.name(); })
                          << QVariant(QString());
    QTest::newRow("type") << "Type"_s << Getter([](ConnmanTechnology &each) { return each.type(); })
                          << QVariant(QString());
    QTest::newRow("connected") << "Connected"_s
                               << Getter([](ConnmanTechnology &each) { return each.isConnected(); })
                               << QVariant(false);
    QTest::newRow("tethering") << "Tethering"_s
                               << Getter([](ConnmanTechnology &each) { return each.isTethering(); })
                               << QVariant(false);
}

void ConnmanTechnologyTest::missingPropertyIsLogged()
{
    QFETCH(QString, property);
    QFETCH(Getter, getter);
    connman().removeTechnologyProperty(name(), property);
    QVERIFY(technology().dbusUpdateProperties());

    QTEST(getter(technology()), "fallback");
    QCOMPARE(criticalLines(),
             QStringList("Missing property \"%1\" of service \"%2\""_s.arg(property, path())));
}

void ConnmanTechnologyTest::propertyOfAWrongTypeIsLogged_data()
{
    missingPropertyIsLogged_data();
}

void ConnmanTechnologyTest::propertyOfAWrongTypeIsLogged()
{
    QFETCH(QString, property);
    QFETCH(Getter, getter);
    connman().setTechnologyProperty(name(), property, QVariantMap{{"a"_s, 1}}, true);
    QVERIFY(technology().dbusUpdateProperties());

    QTEST(getter(technology()), "fallback");
    QCOMPARE(criticalLines(),
             QStringList("Invalid type of property \"%1\" of service \"%2\""_s.arg(property, path())));
}

void ConnmanTechnologyTest::powerIsReadAnew_data()
{
    QTest::addColumn<bool>("on");
    QTest::addColumn<int>("expected");
    QTest::newRow("on") << true << 1;
    QTest::newRow("off") << false << 0;
}

void ConnmanTechnologyTest::powerIsReadAnew()
{
    QFETCH(bool, on);
    connman().setTechnologyProperty(name(), powered, on, true);

    QTEST(technology().isPowered(), "expected");
    QCOMPARE(calls(), QStringList(call("GetProperties")));
    QCOMPARE(criticalLines(), QStringList());
}

void ConnmanTechnologyTest::missingPowerIsUnknownWithOneLine()
{
    connman().removeTechnologyProperty(name(), powered);

    QCOMPARE(technology().isPowered(), -1);
    QCOMPARE(criticalLines(), QStringList("Missing property \"Powered\" of service \"%1\""_s.arg(path())));
}

void ConnmanTechnologyTest::refreshReplacesTheWholeCache()
{
    const Fault other = fault("GetProperties", FaultKind::reply({QVariantMap{{powered, true}}}));

    QCOMPARE(technology().isPowered(), 1);
    QCOMPARE(technology().name(), QString());
    QCOMPARE(criticalLines(), QStringList("Missing property \"Name\" of service \"%1\""_s.arg(path())));
}

void ConnmanTechnologyTest::refreshOfARemovedTechnologyIsFalse()
{
    connman().removeTechnology(name());

    QVERIFY(!technology().dbusUpdateProperties());
    QCOMPARE(criticalLines().size(), 1);
    QVERIFY(criticalLines().constFirst().startsWith("Call to GetProperties failed: \""_s));
}

void ConnmanTechnologyTest::powerOfARemovedTechnologyIsTheLastKnown()
{
    connman().removeTechnology(name());

    QCOMPARE(technology().isPowered(), 1);
    QCOMPARE(criticalLines().size(), 1);
}

void ConnmanTechnologyTest::failedRefreshIsTrueAndKeepsTheCache_data()
{
    QTest::addColumn<QString>("error");
    QTest::addColumn<bool>("isCurrent");

    const QString busError = "org.freedesktop.DBus.Error."_s;
    QTest::newRow("failed") << "net.connman.Error.Failed"_s << true;
    QTest::newRow("access denied") << busError + "AccessDenied"_s << true;
    QTest::newRow("no reply") << busError + "NoReply"_s << true;
    QTest::newRow("ConnMan gone") << busError + "ServiceUnknown"_s << true;
    QTest::newRow("unknown method") << busError + "UnknownMethod"_s << true;
    QTest::newRow("unknown object") << busError + "UnknownObject"_s << false;
}

void ConnmanTechnologyTest::failedRefreshIsTrueAndKeepsTheCache()
{
    QFETCH(QString, error);
    const Fault failing = fault("GetProperties", FaultKind::error(error, "Because"_s));

    QTEST(technology().dbusUpdateProperties(), "isCurrent");
    QCOMPARE(criticalLines(), QStringList("Call to GetProperties failed: \"Because\""_s));
    QCOMPARE(technology().name(), "WiFi"_s);
}

void ConnmanTechnologyTest::changeOfConnectedReachesTheCacheWithoutAnotherCall()
{
    connman().setTechnologyProperty(name(), "Connected"_s, false);

    QTRY_VERIFY_WITH_TIMEOUT(!technology().isConnected(), eventTimeoutMs);
    QCOMPARE(calls(), QStringList());
    QCOMPARE(criticalLines(), QStringList());
}

void ConnmanTechnologyTest::changedPropertyIsLogged()
{
    connman().setTechnologyProperty(name(), "Connected"_s, false);

    QTRY_COMPARE_WITH_TIMEOUT(debugLines(),
                              QStringList("propertyChanged( \"Connected\" ,  QVariant(bool, false) )"_s),
                              eventTimeoutMs);
}

void ConnmanTechnologyTest::changedDictionaryIsReadBeforeItIsLogged()
{
    const QVariantMap limits{{"Max"_s, 7}};
    connman().setTechnologyProperty(name(), "Limits"_s, limits);

    QTRY_COMPARE_WITH_TIMEOUT(debugLines(),
                              QStringList("propertyChanged( \"Limits\" ,  QVariant(QVariantMap, "
                                          "QMap((\"Max\", QVariant(int, 7)))) )"_s),
                              eventTimeoutMs);
}

// No getter tells; what cannot be made plain is warned about.
void ConnmanTechnologyTest::everyValueOfARefreshIsMadePlain()
{
    const QVariant path = QVariant::fromValue(QDBusObjectPath("/x"_s));
    const Fault other = fault("GetProperties", FaultKind::reply({QVariantMap{{"A"_s, path}, {"B"_s, path}}}));

    QVERIFY(technology().dbusUpdateProperties());
    const QString line = "Unknown QVariant::UserType: %1"_s.arg(qMetaTypeId<QDBusObjectPath>());
    QCOMPARE(log().lines("Utils"_s, QtWarningMsg), QStringList({line, line}));
}

void ConnmanTechnologyTest::otherTechnologiesChangesAreIgnored()
{
    const QString member = "PropertyChanged"_s;
    const QString interface = "net.connman.Technology"_s;
    const QString connected = "Connected"_s;
    const QVariantList arguments{connected, QVariant::fromValue(QDBusVariant(false))};
    connman().emitSignal("/net/connman/technology/ethernet"_s, interface, member, arguments);
    connman().setTechnologyProperty(name(), "Tethering"_s, false);

    QTRY_VERIFY_WITH_TIMEOUT(!technology().isTethering(), eventTimeoutMs);
    QVERIFY(technology().isConnected());
}

static const Suite<ConnmanTechnologyTest> connmanTechnologyTest;
#include "ConnmanTechnologyTest.moc"
