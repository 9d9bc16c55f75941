#include "ServiceFixture.h"
#include "Suite.h"

#include <QDebug>
#include <QTest>

using test_support::Fault;
using test_support::FaultKind;

namespace {

const QString autoConnect = QStringLiteral("AutoConnect");

} // namespace

/// Writing properties: what reaches ConnMan, and what comes back.
class ConnmanServiceOperationsTest : public ServiceFixture
{
    Q_OBJECT

private slots:
    void writtenPropertyIsFollowedByARefresh();
    void writtenPropertyIsLogged();
    void valueIsSentWithItsOwnType_data();
    void valueIsSentWithItsOwnType();
    void rejectedPropertyIsLoggedAndStillRefreshes_data();
    void rejectedPropertyIsLoggedAndStillRefreshes();
    void writingToAServiceThatIsGoneIsNotLogged();
    void writeWithoutAnswerFails();
    void writeToAVanishedConnmanFails();
};

void ConnmanServiceOperationsTest::writtenPropertyIsFollowedByARefresh()
{
    connman().setServiceProperty(identifier(), QStringLiteral("Strength"), QVariant::fromValue<uchar>(42),
                                 true);

    QVERIFY(service().dbusSetProperty(autoConnect, false));
    QCOMPARE(calls(), QStringList({setProperty("AutoConnect", "false"), getProperties()}));
    QVERIFY(!service().getAutoConnect());
    QCOMPARE(service().strength(), 42);
    QCOMPARE(criticalLines(), QStringList());
}

void ConnmanServiceOperationsTest::writtenPropertyIsLogged()
{
    QVERIFY(service().dbusSetProperty(autoConnect, false));
    QCOMPARE(log().lines(QStringLiteral("ConnmanService.properties"), QtDebugMsg).constFirst(),
             QStringLiteral("\"AutoConnect\" -> QVariant(bool, false)"));
}

void ConnmanServiceOperationsTest::valueIsSentWithItsOwnType_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("sent");

    QTest::newRow("boolean") << QVariant(true) << QByteArray("true");
    QTest::newRow("string") << QVariant(QStringLiteral("a \"b\"")) << QByteArray("\"a \\\"b\\\"\"");
    QTest::newRow("integer") << QVariant(-7) << QByteArray("-7");
    QTest::newRow("byte") << QVariant::fromValue<uchar>(64) << QByteArray("byte 0x40");
    QTest::newRow("strings") << QVariant(QStringList({QStringLiteral("a"), QStringLiteral("b")}))
                             << QByteArray("[\"a\", \"b\"]");
    QTest::newRow("no strings") << QVariant(QStringList()) << QByteArray("@as []");
    QTest::newRow("dictionary") << QVariant(QVariantMap{{QStringLiteral("Method"), QStringLiteral("off")}})
                                << QByteArray("{\"Method\": <\"off\">}");
    QTest::newRow("empty dictionary") << QVariant(QVariantMap()) << QByteArray("@a{sv} {}");
}

void ConnmanServiceOperationsTest::valueIsSentWithItsOwnType()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, sent);
    const Fault taken = fault("SetProperty", FaultKind::reply({}));

    QVERIFY(service().dbusSetProperty(QStringLiteral("Anything"), value));
    QCOMPARE(calls(), QStringList({setProperty("Anything", sent.constData()), getProperties()}));
}

void ConnmanServiceOperationsTest::rejectedPropertyIsLoggedAndStillRefreshes_data()
{
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("message");

    QTest::newRow("invalid arguments")
        << QStringLiteral("net.connman.Error.InvalidArguments") << QStringLiteral("Invalid arguments");
    QTest::newRow("not supported") << QStringLiteral("net.connman.Error.NotSupported")
                                   << QStringLiteral("Not supported");
    QTest::newRow("not connected") << QStringLiteral("net.connman.Error.NotConnected")
                                   << QStringLiteral("Not connected");
    QTest::newRow("access denied") << QStringLiteral("org.freedesktop.DBus.Error.AccessDenied")
                                   << QStringLiteral("No \"way\" in");
    QTest::newRow("unknown method") << QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod")
                                    << QStringLiteral("What?");
    QTest::newRow("unknown interface")
        << QStringLiteral("org.freedesktop.DBus.Error.UnknownInterface") << QStringLiteral("What?");
    QTest::newRow("no message") << QStringLiteral("net.connman.Error.Failed") << QString();
}

void ConnmanServiceOperationsTest::rejectedPropertyIsLoggedAndStillRefreshes()
{
    QFETCH(QString, error);
    QFETCH(QString, message);
    const Fault rejected = fault("SetProperty", FaultKind::error(error, message));
    connman().setServiceProperty(identifier(), QStringLiteral("Strength"), QVariant::fromValue<uchar>(42),
                                 true);

    QVERIFY(!service().dbusSetProperty(autoConnect, false));
    QCOMPARE(calls(), QStringList({setProperty("AutoConnect", "false"), getProperties()}));
    QString printed;
    QDebug(&printed).nospace() << message;
    QCOMPARE(criticalLines(), QStringList(propertiesLine(
                                  QStringLiteral("Setting property \"AutoConnect\" failed: ") + printed)));
    QCOMPARE(service().strength(), 42);
    QVERIFY(service().getAutoConnect());
}

void ConnmanServiceOperationsTest::writingToAServiceThatIsGoneIsNotLogged()
{
    removeServiceUnnoticed();

    QVERIFY(!service().dbusSetProperty(autoConnect, false));
    QCOMPARE(calls(), QStringList({setProperty("AutoConnect", "false"), getProperties()}));
    QCOMPARE(criticalLines(), QStringList());
    QCOMPARE(service().name(), QStringLiteral("HomeNet"));
}

void ConnmanServiceOperationsTest::writeWithoutAnswerFails()
{
    const Fault unanswered = fault("SetProperty", silence());

    QVERIFY(!service().dbusSetProperty(autoConnect, false));
    QCOMPARE(criticalLines(),
             {propertiesLine(QStringLiteral("Setting property \"AutoConnect\" failed: \"Silence\""))});
    QCOMPARE(calls().size(), 2);
}

void ConnmanServiceOperationsTest::writeToAVanishedConnmanFails()
{
    const Fault vanished = fault("SetProperty", FaultKind::vanish());

    QVERIFY(!service().dbusSetProperty(autoConnect, false));
    QCOMPARE(
        criticalLines(),
        QStringList(
            {propertiesLine(QStringLiteral("Setting property \"AutoConnect\" failed: \"Message recipient "
                                           "disconnected from message bus without replying\"")),
             propertiesLine(QStringLiteral("Call to GetProperties failed: \"The name net.connman was "
                                           "not provided by any .service files\""))}));
    QCOMPARE(service().name(), QStringLiteral("HomeNet"));
}

static const Suite<ConnmanServiceOperationsTest> suite;
#include "ConnmanServiceOperationsTest.moc"
