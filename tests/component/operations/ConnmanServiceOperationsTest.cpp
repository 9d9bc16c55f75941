#include "ServiceFixture.h"
#include "Suite.h"
#include "Text.h"

#include <QDebug>
#include <QTest>

using test_support::Fault;
using test_support::FaultKind;

namespace {

const QString autoConnect = "AutoConnect"_s;

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
    void writeToAVanishedConnmanFails();
};

void ConnmanServiceOperationsTest::writtenPropertyIsFollowedByARefresh()
{
    connman().setServiceProperty(identifier(), "Strength"_s, QVariant::fromValue<uchar>(42), true);

    QVERIFY(service().dbusSetProperty(autoConnect, false));
    QCOMPARE(calls(), QStringList({setProperty("AutoConnect", "false"), getProperties()}));
    QVERIFY(!service().getAutoConnect());
    QCOMPARE(service().strength(), 42);
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceOperationsTest::writtenPropertyIsLogged()
{
    QVERIFY(service().dbusSetProperty(autoConnect, false));
    QCOMPARE(log().lines("ConnmanService.properties"_s, QtDebugMsg).constFirst(),
             "\"AutoConnect\" -> QVariant(bool, false)"_s);
}

void ConnmanServiceOperationsTest::valueIsSentWithItsOwnType_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("sent");

    QTest::newRow("boolean") << QVariant(true) << QByteArray("true");
    QTest::newRow("string") << QVariant("a \"b\""_s) << QByteArray("\"a \\\"b\\\"\"");
    QTest::newRow("integer") << QVariant(-7) << QByteArray("-7");
    QTest::newRow("byte") << QVariant::fromValue<uchar>(64) << QByteArray("byte 0x40");
    QTest::newRow("strings") << QVariant(QStringList({"a"_s, "b"_s})) << QByteArray("[\"a\", \"b\"]");
    QTest::newRow("no strings") << QVariant(QStringList()) << QByteArray("@as []");
    QTest::newRow("dictionary") << QVariant(QVariantMap{{"Method"_s, "off"_s}})
                                << QByteArray("{\"Method\": <\"off\">}");
    QTest::newRow("empty dictionary") << QVariant(QVariantMap()) << QByteArray("@a{sv} {}");
}

void ConnmanServiceOperationsTest::valueIsSentWithItsOwnType()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, sent);
    const Fault taken = fault("SetProperty", FaultKind::reply({}));

    QVERIFY(service().dbusSetProperty("Anything"_s, value));
    QCOMPARE(calls(), QStringList({setProperty("Anything", sent.constData()), getProperties()}));
}

void ConnmanServiceOperationsTest::rejectedPropertyIsLoggedAndStillRefreshes_data()
{
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("message");

    QTest::newRow("invalid arguments") << "net.connman.Error.InvalidArguments"_s
                                       << "Invalid arguments"_s;
    QTest::newRow("not supported") << "net.connman.Error.NotSupported"_s
                                   << "Not supported"_s;
    QTest::newRow("not connected") << "net.connman.Error.NotConnected"_s
                                   << "Not connected"_s;
    QTest::newRow("access denied") << "org.freedesktop.DBus.Error.AccessDenied"_s
                                   << "No \"way\" in"_s;
    QTest::newRow("unknown method") << "org.freedesktop.DBus.Error.UnknownMethod"_s
                                    << "What?"_s;
    QTest::newRow("unknown interface") << "org.freedesktop.DBus.Error.UnknownInterface"_s
                                       << "What?"_s;
    QTest::newRow("no message") << "net.connman.Error.Failed"_s << QString();
    QTest::newRow("no reply") << "org.freedesktop.DBus.Error.NoReply"_s
                              << "Silence"_s;
}

void ConnmanServiceOperationsTest::rejectedPropertyIsLoggedAndStillRefreshes()
{
    QFETCH(QString, error);
    QFETCH(QString, message);
    const Fault rejected = fault("SetProperty", FaultKind::error(error, message));
    connman().setServiceProperty(identifier(), "Strength"_s, QVariant::fromValue<uchar>(42), true);

    QVERIFY(!service().dbusSetProperty(autoConnect, false));
    QCOMPARE(calls(), QStringList({setProperty("AutoConnect", "false"), getProperties()}));
    QString printed;
    QDebug(&printed).nospace() << message;
    QCOMPARE(complaints(),
             QStringList(propertiesLine("Setting property \"AutoConnect\" failed: "_s + printed)));
    QCOMPARE(service().strength(), 42);
    QVERIFY(service().getAutoConnect());
}

void ConnmanServiceOperationsTest::writingToAServiceThatIsGoneIsNotLogged()
{
    removeServiceUnnoticed();

    QVERIFY(!service().dbusSetProperty(autoConnect, false));
    QCOMPARE(calls(), QStringList({setProperty("AutoConnect", "false"), getProperties()}));
    QCOMPARE(complaints(), QStringList());
    QCOMPARE(service().name(), "HomeNet"_s);
}

void ConnmanServiceOperationsTest::writeToAVanishedConnmanFails()
{
    const Fault vanished = fault("SetProperty", FaultKind::vanish());

    QVERIFY(!service().dbusSetProperty(autoConnect, false));
    QCOMPARE(complaints(),
             QStringList({propertiesLine("Setting property \"AutoConnect\" failed: \"Message recipient "
                                         "disconnected from message bus without replying\""_s),
                          propertiesLine("Call to GetProperties failed: \"The name net.connman was "
                                         "not provided by any .service files\""_s)}));
    QCOMPARE(service().name(), "HomeNet"_s);
}

static const Suite<ConnmanServiceOperationsTest> connmanServiceOperationsTest;
#include "ConnmanServiceOperationsTest.moc"
