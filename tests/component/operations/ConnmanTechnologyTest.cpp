#include "EventWait.h"
#include "Suite.h"
#include "TechnologyFixture.h"

#include <functional>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QMap>
#include <QTest>

using test_support::eventTimeoutMs;
using test_support::Fault;
using test_support::FaultKind;
using Getter = std::function<QVariant(ConnmanTechnology &)>;

Q_DECLARE_METATYPE(Getter)

namespace {
const QString powered = QStringLiteral("Powered");
}

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
    void powerOfAWrongTypeIsUnknown();
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
    QCOMPARE(connman().calls(), QStringList(call("GetProperties")));
    QVERIFY(technology().isConnected());
    QCOMPARE(criticalLines(), QStringList());
}

void ConnmanTechnologyTest::constructionWithoutConnmanIsLogged()
{
    connman().setPresent(QStringLiteral("net.connman"), false);
    makeProxy();
    QCOMPARE(criticalLines(),
             QStringList(QStringLiteral("Call to GetProperties failed: \"The name net.connman was "
                                        "not provided by any .service files\"")));
    QCOMPARE(technology().name(), QString());
}

void ConnmanTechnologyTest::unusableBusIsLoggedAndEverythingFails()
{
    ConnmanTechnology unreachable(QDBusConnection(QStringLiteral("nowhere")), name(), nullptr);
    const QString notConnected = QStringLiteral("\"Not connected to D-Bus server\"");

    QCOMPARE(criticalLines(),
             QStringList(
                 {QStringLiteral("Unable to connect PropertyChanged signal for service \"%1\"").arg(path()),
                  QStringLiteral("Call to GetProperties failed: ") + notConnected}));
    QCOMPARE(unreachable.isPowered(), -1);
    QVERIFY(!unreachable.setPowered(true));
    QVERIFY(!unreachable.scan());
}

void ConnmanTechnologyTest::gettersReadTheCache()
{
    QCOMPARE(technology().name(), QStringLiteral("WiFi"));
    QCOMPARE(technology().type(), name());
    QVERIFY(technology().isConnected());
    QVERIFY(technology().isTethering());
    QCOMPARE(connman().calls(), QStringList());
    QCOMPARE(criticalLines(), QStringList());
}

void ConnmanTechnologyTest::missingPropertyIsLogged_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QVariant>("fallback");

    QTest::newRow("name") << QStringLiteral("Name")
                          << Getter([](ConnmanTechnology &each) { return each.name(); })
                          << QVariant(QString());
    QTest::newRow("type") << QStringLiteral("Type")
                          << Getter([](ConnmanTechnology &each) { return each.type(); })
                          << QVariant(QString());
    QTest::newRow("connected") << QStringLiteral("Connected")
                               << Getter([](ConnmanTechnology &each) { return each.isConnected(); })
                               << QVariant(false);
    QTest::newRow("tethering") << QStringLiteral("Tethering")
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
             QStringList(QStringLiteral("Missing property \"%1\" of service \"%2\"").arg(property, path())));
}

void ConnmanTechnologyTest::propertyOfAWrongTypeIsLogged_data()
{
    missingPropertyIsLogged_data();
}

void ConnmanTechnologyTest::propertyOfAWrongTypeIsLogged()
{
    QFETCH(QString, property);
    QFETCH(Getter, getter);
    connman().setTechnologyProperty(name(), property, QVariantMap{{QStringLiteral("a"), 1}}, true);
    QVERIFY(technology().dbusUpdateProperties());

    QTEST(getter(technology()), "fallback");
    QCOMPARE(criticalLines(),
             QStringList(
                 QStringLiteral("Invalid type of property \"%1\" of service \"%2\"").arg(property, path())));
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
    QCOMPARE(connman().calls(), QStringList(call("GetProperties")));
    QCOMPARE(criticalLines(), QStringList());
}

void ConnmanTechnologyTest::missingPowerIsUnknownWithOneLine()
{
    connman().removeTechnologyProperty(name(), powered);

    QCOMPARE(technology().isPowered(), -1);
    QCOMPARE(criticalLines(),
             QStringList(QStringLiteral("Missing property \"Powered\" of service \"%1\"").arg(path())));
}

void ConnmanTechnologyTest::powerOfAWrongTypeIsUnknown()
{
    connman().setTechnologyProperty(name(), powered, QVariantMap{{QStringLiteral("a"), 1}}, true);

    QCOMPARE(technology().isPowered(), -1);
    QCOMPARE(
        criticalLines(),
        QStringList(QStringLiteral("Invalid type of property \"Powered\" of service \"%1\"").arg(path())));
}

void ConnmanTechnologyTest::refreshReplacesTheWholeCache()
{
    const Fault other = fault("GetProperties", FaultKind::reply({QVariantMap{{powered, true}}}));

    QCOMPARE(technology().isPowered(), 1);
    QCOMPARE(technology().name(), QString());
    QCOMPARE(criticalLines(),
             QStringList(QStringLiteral("Missing property \"Name\" of service \"%1\"").arg(path())));
}

void ConnmanTechnologyTest::refreshOfARemovedTechnologyIsFalse()
{
    connman().removeTechnology(name());

    QVERIFY(!technology().dbusUpdateProperties());
    QCOMPARE(criticalLines().size(), 1);
    QVERIFY(criticalLines().constFirst().startsWith(QStringLiteral("Call to GetProperties failed: \"")));
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

    const QString busError = QStringLiteral("org.freedesktop.DBus.Error.");
    QTest::newRow("failed") << QStringLiteral("net.connman.Error.Failed") << true;
    QTest::newRow("access denied") << busError + QStringLiteral("AccessDenied") << true;
    QTest::newRow("no reply") << busError + QStringLiteral("NoReply") << true;
    QTest::newRow("ConnMan gone") << busError + QStringLiteral("ServiceUnknown") << true;
    QTest::newRow("unknown method") << busError + QStringLiteral("UnknownMethod") << true;
    QTest::newRow("unknown object") << busError + QStringLiteral("UnknownObject") << false;
}

void ConnmanTechnologyTest::failedRefreshIsTrueAndKeepsTheCache()
{
    QFETCH(QString, error);
    const Fault failing = fault("GetProperties", FaultKind::error(error, QStringLiteral("Because")));

    QTEST(technology().dbusUpdateProperties(), "isCurrent");
    QCOMPARE(criticalLines(), QStringList(QStringLiteral("Call to GetProperties failed: \"Because\"")));
    QCOMPARE(technology().name(), QStringLiteral("WiFi"));
}

void ConnmanTechnologyTest::changeOfConnectedReachesTheCacheWithoutAnotherCall()
{
    connman().setTechnologyProperty(name(), QStringLiteral("Connected"), false);

    QTRY_VERIFY_WITH_TIMEOUT(!technology().isConnected(), eventTimeoutMs);
    QCOMPARE(connman().calls(), QStringList());
    QCOMPARE(criticalLines(), QStringList());
}

void ConnmanTechnologyTest::changedPropertyIsLogged()
{
    connman().setTechnologyProperty(name(), QStringLiteral("Connected"), false);

    QTRY_COMPARE_WITH_TIMEOUT(
        debugLines(),
        QStringList(QStringLiteral("propertyChanged( \"Connected\" ,  QVariant(bool, false) )")),
        eventTimeoutMs);
}

void ConnmanTechnologyTest::changedDictionaryIsReadBeforeItIsLogged()
{
    const QVariantMap limits{{QStringLiteral("Max"), 7}};
    connman().setTechnologyProperty(name(), QStringLiteral("Limits"), limits);

    QTRY_COMPARE_WITH_TIMEOUT(
        debugLines(),
        QStringList(QStringLiteral("propertyChanged( \"Limits\" ,  QVariant(QVariantMap, "
                                   "QMap((\"Max\", QVariant(int, 7)))) )")),
        eventTimeoutMs);
}

// No getter tells; what cannot be made plain is warned about.
void ConnmanTechnologyTest::everyValueOfARefreshIsMadePlain()
{
    const QVariant path = QVariant::fromValue(QDBusObjectPath(QStringLiteral("/x")));
    const Fault other =
        fault("GetProperties",
              FaultKind::reply({QVariantMap{{QStringLiteral("A"), path}, {QStringLiteral("B"), path}}}));

    QVERIFY(technology().dbusUpdateProperties());
    const QString line = QStringLiteral("Unknown QVariant::UserType: %1").arg(qMetaTypeId<QDBusObjectPath>());
    QCOMPARE(log().lines(QStringLiteral("Utils"), QtWarningMsg), QStringList({line, line}));
}

void ConnmanTechnologyTest::otherTechnologiesChangesAreIgnored()
{
    const QString member = QStringLiteral("PropertyChanged");
    const QString interface = QStringLiteral("net.connman.Technology");
    const QString connected = QStringLiteral("Connected");
    const QVariantList arguments{connected, QVariant::fromValue(QDBusVariant(false))};
    connman().emitSignal(QStringLiteral("/net/connman/technology/ethernet"), interface, member, arguments);
    connman().setTechnologyProperty(name(), QStringLiteral("Tethering"), false);

    QTRY_VERIFY_WITH_TIMEOUT(!technology().isTethering(), eventTimeoutMs);
    QVERIFY(technology().isConnected());
}

static const Suite<ConnmanTechnologyTest> suite;
#include "ConnmanTechnologyTest.moc"
